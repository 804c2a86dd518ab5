#pragma once

#include <string>
#include <vector>

#include "indexer/FSEventsMonitor.h"
#include "store/FileRecord.h"

namespace zelnor {

/// What a list of events means for the index.
struct IncrementalUpdate {
  std::vector<std::string> removals;
  std::vector<FileRecord> upserts;

  /// Takes the last event of each path and looks at the entry as it is now: a record to store if it
  /// is there, else a path to remove. Reads the disk.
  static IncrementalUpdate plan(const std::vector<FSEventItem>& events);
};

}  // namespace zelnor
