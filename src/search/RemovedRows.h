#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "search/SearchResult.h"

namespace zelnor {

/// The rows that were taken out of a list and must not come back into it, although the index still
/// holds them where they were, or in the trash they were moved to.
class RemovedRows {
 public:
  void add(const SearchResult& row);
  void clear();

  /// Takes out of `rows`, which just came, those that were removed; answers how many. If `isWhole`,
  /// no others will come, and the index has dropped what is not among them.
  std::int64_t leaveOut(std::vector<SearchResult>& rows, bool isWhole);

 private:
  struct Row {
    FileRecord record;
    bool wasElsewhere = false;  ///< in the trash: if it is back in its place, somebody wanted that
    bool isHeld = false;        ///< among the rows that came last
  };

  [[nodiscard]] Row* find(const FileRecord& record);

  std::unordered_map<std::int64_t, Row> rows_;           ///< by their ids
  std::unordered_map<std::int64_t, std::int64_t> idOf_;  ///< by their inodes
};

}  // namespace zelnor
