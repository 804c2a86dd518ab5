#pragma once

#include "store/FileChanges.h"
#include "store/FileTable.h"
#include "store/FullTextIndex.h"

namespace zelnor {

/// Makes the rows of these paths what the changes say, inside the caller's transaction.
///
/// Each path is looked up once. What the index holds as it is, whatever its id, stays; a removal
/// and a record of a new path that is the same otherwise become a new path for the row, which keeps
/// its id and takes half the time of removing and inserting; a record of a known path takes its
/// place under a new id. No path may occur twice.
RowDifference applyChanges(FileTable& table, FullTextIndex& fullText, FileChanges changes);

}  // namespace zelnor
