#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/SampleTerms.h"
#include "search/SearchQuery.h"

namespace zelnor::bench {

/// One kind of search.
struct QueryCase {
  std::string name;
  SearchQuery query;
};

/// The searches to measure. Where a fixed term finds nothing, as `finds` says, one of `terms` takes
/// its place.
std::vector<QueryCase> queryCases(const SampleTerms& terms,
                                  const std::function<bool(const std::string&)>& finds);

}  // namespace zelnor::bench
