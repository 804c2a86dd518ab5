#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "store/FileRecord.h"

namespace zelnor::test {

using Rows = std::map<std::string, FileRecord>;  ///< by path, without row ids

/// What is on disk, found without any of the code that is tested.
struct Walk {
  Rows rows;
  /// Folders of which nobody can say just now what is in them.
  std::set<std::string> unknown;

  static Walk of(const std::vector<std::string>& roots);
};

/// The first few differences between what is on disk and in the index, or nothing. What is below
/// one of `ignored` does not count.
std::string difference(const Walk& disk, const Rows& index,
                       const std::vector<std::string>& ignored);

}  // namespace zelnor::test
