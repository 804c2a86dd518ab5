#pragma once

#include <set>
#include <string>
#include <vector>

#include "store/FileRecord.h"
#include "tests/torture/MemoryIndex.h"

namespace zelnor::test {

/// What is on disk, found without any of the code that is tested.
struct Walk {
  MemoryIndex::Rows rows;
  /// Folders of which nobody can say just now what is in them.
  std::set<std::string> unknown;

  static Walk of(const std::vector<std::string>& roots);
  [[nodiscard]] std::vector<FileRecord> records() const;
};

/// The first few differences between what is on disk and in the index, or nothing. What is below
/// one of `ignored` does not count.
std::string difference(const Walk& disk, const MemoryIndex::Rows& index,
                       const std::vector<std::string>& ignored);

}  // namespace zelnor::test
