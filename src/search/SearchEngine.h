#pragma once

#include <cstdint>
#include <stop_token>
#include <utility>

#include "search/RegularExpressionSearch.h"
#include "search/SearchSource.h"
#include "store/DatabaseManager.h"

namespace zelnor {

/// Answers searches from the index. Every call is independent of those before and beside it.
///
/// Wildcards and words are SQLite's work; regular expressions are looked for here, in the names of
/// the first 50,000 rows of the index, whatever the filter. One that does not compile has no
/// matches.
class SearchEngine final : public SearchSource {
 public:
  /// `database` is a connection that nobody writes through; it must outlive the engine. Regular
  /// expressions are looked for on `matchers`, and may keep its threads busy for seconds: nothing
  /// else that a user waits for should need them.
  SearchEngine(DatabaseManager& database, tasks::Executor matchers, MatchBudget budget = {})
      : database_(database), matchers_(std::move(matchers)), budget_(std::move(budget)) {}

  tasks::Async<SearchPage> search(SearchQuery query, std::int64_t limit, std::int64_t offset,
                                  std::stop_token stop) override;
  tasks::Async<std::int64_t> searchCount(SearchQuery query, std::stop_token stop) override;

  /// The number of entries in the index. Throws DatabaseError.
  tasks::Async<std::int64_t> totalIndexedCount();

 private:
  tasks::Async<SearchPage> searchByExpression(SearchQuery query, std::stop_token stop);

  DatabaseManager& database_;
  tasks::Executor matchers_;
  MatchBudget budget_;
};

}  // namespace zelnor
