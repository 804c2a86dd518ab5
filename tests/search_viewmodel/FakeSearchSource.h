#pragma once

#include <algorithm>
#include <deque>
#include <memory>
#include <optional>
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
  };

  std::int64_t matches = 0;
  std::int64_t firstRow = 0;        ///< the first match; those before have gone
  std::string folder = "/folder/";  ///< where the matches are
  std::optional<DatabaseError> failure;
  bool isHeld = false;
  std::vector<Call> searches;
  std::vector<SearchQuery> counts;

  tasks::Async<std::vector<SearchResult>> search(SearchQuery query, std::int64_t limit,
                                                 std::int64_t offset) override {
    searches.push_back({query, limit, offset});
    co_await turn();
    std::vector<SearchResult> page;
    const auto end = offset + std::min(limit, std::max<std::int64_t>(matches - offset, 0));
    for (auto id = offset; id < end; ++id) page.push_back(row(firstRow + id, folder));
    co_return page;
  }

  tasks::Async<std::int64_t> searchCount(SearchQuery query) override {
    counts.push_back(std::move(query));
    co_await turn();
    co_return matches;
  }

  void release() {
    waiting_.front()->set(true);
    waiting_.pop_front();
  }
  [[nodiscard]] std::size_t waiting() const { return waiting_.size(); }

  static SearchResult row(std::int64_t id, const std::string& folder = "/folder/") {
    FileRecord record;
    record.id = id;
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
