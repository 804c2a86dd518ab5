#pragma once

#include <vector>

#include "indexer/FSEventsMonitor.h"
#include "store/FileChanges.h"

namespace zelnor {

/// What a list of events means for the index: takes the last event of each path and looks at the
/// entry as it is now. A record to store if it is there, else a path to remove. Reads the disk.
FileChanges planIncrementalUpdate(const std::vector<FSEventItem>& events);

}  // namespace zelnor
