#pragma once

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

#include "search/SearchSource.h"
#include "store/DatabaseError.h"
#include "tasks/Completion.h"

namespace zelnor::test {

/// Answers every query with `matches` rows whose identifiers are their positions. While `isHeld`,
/// answers wait until the test releases them, oldest first.
class FakeSearchSource final : public SearchSource {
 public:
  struct Call {
    SearchQuery query;
    std::int64_t limit = 0;
    std::int64_t offset = 0;
    std::stop_token stop;
  };

  std::int64_t matches = 0;
  std::int64_t firstRow = 0;                      ///< the first match; those before have gone
  std::string folder = "/folder/";                ///< where the matches are
  std::set<std::int64_t> gone;                    ///< of the rows, those that do not match any more
  std::map<std::int64_t, SearchResult> replaced;  ///< what there is in place of some of the rows
  bool isIncomplete = false;
  std::optional<DatabaseError> failure;
  bool isHeld = false;
  std::vector<Call> searches;
  std::vector<SearchQuery> counts;

  tasks::Async<SearchPage> search(SearchQuery query, std::int64_t limit, std::int64_t offset,
                                  std::stop_token stop) override {
    searches.push_back({query, limit, offset, stop});
    co_await turn();
    SearchPage page;
    page.isIncomplete = isIncomplete;
    for (auto id = firstRow; id < firstRow + matches; ++id) {
      if (gone.contains(id) || offset-- > 0) continue;
      if (std::ssize(page.results) == limit) break;
      const auto other = replaced.find(id);
      page.results.push_back(other == replaced.end() ? row(id, folder) : other->second);
    }
    co_return page;
  }

  tasks::Async<std::int64_t> searchCount(SearchQuery query, std::stop_token /*stop*/) override {
    counts.push_back(std::move(query));
    co_await turn();
    co_return matches - std::ssize(gone);
  }

  void release() {
    waiting_.front()->set(true);
    waiting_.pop_front();
  }
  [[nodiscard]] std::size_t waiting() const { return waiting_.size(); }

  static SearchResult row(std::int64_t id, const std::string& folder = "/folder/") {
    FileRecord record;
    record.id = id;
    record.inode = id + 1;
    record.name = "name" + std::to_string(id);
    record.path = folder + record.name;
    return {record};
  }

 private:
  tasks::Async<void> turn() {
    if (isHeld) {
      const auto gate = waiting_.emplace_back(std::make_shared<tasks::Completion<bool>>());
      co_await tasks::Completion<bool>::wait(gate);
    }
    if (failure) throw DatabaseError(*failure);
  }

  std::deque<std::shared_ptr<tasks::Completion<bool>>> waiting_;
};

}  // namespace zelnor::test
