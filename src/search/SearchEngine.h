#pragma once

#include <cstdint>
#include <vector>

#include "search/SearchSource.h"
#include "store/DatabaseManager.h"
#include "tasks/Actor.h"

namespace zelnor {

/// Answers searches from the index. Every call is independent of those before.
///
/// Wildcards and words are SQLite's work; regular expressions are looked for here, on the actor, in
/// the names of the first 50,000 rows of the index, whatever the filter. One that does not compile
/// has no matches.
class SearchEngine final : public SearchSource, private tasks::Actor {
 public:
  /// `database` is a connection that nobody writes through; it must outlive the engine.
  SearchEngine(DatabaseManager& database, const tasks::Executor& executor)
      : Actor(executor), database_(database) {}

  tasks::Async<std::vector<SearchResult>> search(SearchQuery query, std::int64_t limit,
                                                 std::int64_t offset) override;
  tasks::Async<std::int64_t> searchCount(SearchQuery query) override;

  /// The number of entries in the index. Throws DatabaseError.
  tasks::Async<std::int64_t> totalIndexedCount();

 private:
  tasks::Async<std::vector<SearchResult>> searchByExpression(SearchQuery query);

  DatabaseManager& database_;
};

}  // namespace zelnor
