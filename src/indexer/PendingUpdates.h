#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>
#include <utility>
#include <vector>

#include "indexer/FSEventsMonitor.h"

namespace zelnor {

/// Lists of events that were delivered and are not in the index yet, in order. Used on one actor.
class PendingUpdates {
 public:
  struct Update {
    std::vector<FSEventItem> events;
    std::size_t lists = 0;  ///< how many delivered lists these events are
  };

  void push(std::vector<FSEventItem> events) { lists_.push_back(std::move(events)); }
  [[nodiscard]] bool isEmpty() const { return lists_.empty(); }

  /// The oldest lists as one. When they come faster than they are applied, one large update is much
  /// cheaper than several: each touches most pages of the secondary indexes.
  Update take() {
    Update update;
    while (!lists_.empty() &&
           (update.lists == 0 || update.events.size() + lists_.front().size() <= kMostAtOnce)) {
      std::ranges::move(lists_.front(), std::back_inserter(update.events));
      lists_.pop_front();
      ++update.lists;
    }
    return update;
  }

 private:
  static constexpr std::size_t kMostAtOnce = 50'000;

  std::deque<std::vector<FSEventItem>> lists_;
};

}  // namespace zelnor
