#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/FileRecord.h"

namespace zelnor {

/// What is to change in the index: paths that are gone, and what there is at others.
struct FileChanges {
  std::vector<std::string> removals;
  std::vector<FileRecord> upserts;
};

/// What a write did to the rows of the index. A row that took the place of another counts as
/// inserted, the other as removed.
struct RowDifference {
  std::int64_t inserted = 0;
  std::int64_t removed = 0;
  std::int64_t moved = 0;

  /// How many rows there are more than before.
  [[nodiscard]] std::int64_t growth() const { return inserted - removed; }

  friend bool operator==(const RowDifference&, const RowDifference&) = default;
};

}  // namespace zelnor
