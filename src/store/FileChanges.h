#pragma once

#include <string>
#include <vector>

#include "store/FileRecord.h"

namespace zelnor {

/// What is to change in the index: paths that are gone, and what there is at others.
struct FileChanges {
  std::vector<std::string> removals;
  std::vector<FileRecord> upserts;
};

}  // namespace zelnor
