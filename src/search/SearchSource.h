#pragma once

#include <cstdint>
#include <stop_token>
#include <vector>

#include "search/SearchQuery.h"
#include "search/SearchResult.h"
#include "tasks/Async.h"

namespace zelnor {

/// Some of the matches of a search, in their order.
struct SearchPage {
  std::vector<SearchResult> results;
  /// Some names took too long to be looked at to the end: there may be more matches.
  bool isIncomplete = false;
};

/// Answers searches: the engine, or what takes its place in a test. Whoever awaits an operation
/// keeps the source alive until it has ended.
///
/// An operation whose `stop` is requested ends as soon as it can and throws `tasks::cancelled()`,
/// so that the next one need not wait for it; it may also end as if nothing had been requested.
class SearchSource {
 public:
  virtual ~SearchSource() = default;

  /// `limit` rows from row `offset` of the matches on; for a regular expression all of them,
  /// whatever the limit. Throws DatabaseError.
  virtual tasks::Async<SearchPage> search(SearchQuery query, std::int64_t limit,
                                          std::int64_t offset, std::stop_token stop) = 0;
  /// The number of matches. Not for regular expressions, whose list is to be counted instead.
  /// Throws DatabaseError.
  virtual tasks::Async<std::int64_t> searchCount(SearchQuery query, std::stop_token stop) = 0;
};

}  // namespace zelnor
