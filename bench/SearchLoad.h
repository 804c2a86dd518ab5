#pragma once

#include <string>
#include <thread>
#include <vector>

#include "bench/Statistics.h"
#include "search/SearchQuery.h"

namespace zelnor::bench {

/// Searches that find something in the index in folder `data`, frequent and rare.
std::vector<SearchQuery> searchesFor(const std::string& data);

/// Searches an index again and again on a thread of its own, at the pace of somebody who types: the
/// first page and the count, as the window does.
class SearchLoad {
 public:
  SearchLoad(std::string data, std::vector<SearchQuery> queries);

  /// Ends the searching; answers how long searches took, in seconds.
  Statistics stop();

 private:
  void run(const std::stop_token& stop);

  std::string data_;
  std::vector<SearchQuery> queries_;
  std::vector<double> times_;
  std::jthread thread_;
};

}  // namespace zelnor::bench
