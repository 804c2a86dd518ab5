#pragma once

#include <cstdint>
#include <vector>

#include "search/SearchQuery.h"
#include "search/SearchResult.h"
#include "tasks/Async.h"

namespace zelnor {

/// Answers searches: the engine, or what takes its place in a test. Whoever awaits an operation
/// keeps the source alive until it has ended.
class SearchSource {
 public:
  virtual ~SearchSource() = default;

  /// `limit` rows from row `offset` of the matches on; for a regular expression all of them,
  /// whatever the limit. Throws DatabaseError.
  virtual tasks::Async<std::vector<SearchResult>> search(SearchQuery query, std::int64_t limit,
                                                         std::int64_t offset) = 0;
  /// The number of matches. Not for regular expressions, whose list is to be counted instead.
  /// Throws DatabaseError.
  virtual tasks::Async<std::int64_t> searchCount(SearchQuery query) = 0;
};

}  // namespace zelnor
