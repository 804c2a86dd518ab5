#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "store/DatabaseError.h"
#include "store/FileChanges.h"
#include "store/FileRecord.h"
#include "store/SelectStatement.h"
#include "tasks/Actor.h"

namespace zelnor {

class IndexDatabase;

/// One connection to the index, as an actor: its operations run one at a time on its executor and
/// are awaited.
///
/// Every operation throws DatabaseError. A process has two managers on one file, one that writes
/// and one that answers searches; readers go on while the other writes.
class DatabaseManager : public tasks::Actor {
 public:
  enum class Access : std::uint8_t { readWrite, readOnly };

  /// Opens "index.sqlite" in `folder`. With `readWrite` the folder and file are created if missing,
  /// and the schema is set up; with `readOnly` nothing is written and the file must exist. Blocks:
  /// not for the main thread. Throws DatabaseError, or std::filesystem::filesystem_error if the
  /// folder cannot be created.
  DatabaseManager(const std::string& folder, const tasks::Executor& executor,
                  Access access = Access::readWrite);
  ~DatabaseManager();

  [[nodiscard]] const std::string& dbPath() const;

  /// Inserts the records in one transaction; one whose path is indexed already replaces that row,
  /// under a new id.
  tasks::Async<RowDifference> batchInsert(std::vector<FileRecord> records);
  /// Deletes the rows with exactly these paths, in one transaction.
  tasks::Async<void> deleteByPaths(std::vector<std::string> paths);
  /// Makes the rows of these paths what the changes say, in one transaction. A row that is as it
  /// should be stays; one that is the same but for its path moves and keeps its id. No path may
  /// occur twice.
  tasks::Async<RowDifference> apply(FileChanges changes);
  tasks::Async<std::int64_t> totalFileCount();

  /// The rows of a search, read from a statement that selects id, name, path, size, mtime, kind and
  /// inode. An error while stepping ends the list early. `limit` is the page size, for reserving
  /// room. Once `stop` is requested it ends, also in the middle, and throws `tasks::cancelled()`.
  tasks::Async<std::vector<FileRecord>> search(SelectStatement statement, std::int64_t limit,
                                               std::stop_token stop = {});
  /// The first column of the statement's first row; 0 if there is none. Stops as `search` does.
  tasks::Async<std::int64_t> searchCount(SelectStatement statement, std::stop_token stop = {});

  /// Makes the full-text table anew from table `files`.
  tasks::Async<void> rebuildFTS();
  /// Empties the index, in one transaction.
  tasks::Async<void> clearAll();

  /// The records whose path the index does not hold.
  tasks::Async<std::vector<FileRecord>> lacking(std::vector<FileRecord> records);

  /// Prepares for filling the index from scratch: secondary indexes and merging of the full-text
  /// table wait until `endBulkLoad`. What is inserted meanwhile is searchable at once, and a
  /// process that dies in between leaves an index in which whoever opens it can go on. `source`,
  /// any number but 0, tells what the index is filled from.
  tasks::Async<void> beginBulkLoad(std::int32_t source);
  /// Makes the secondary indexes and writes the log back into the database. Merging goes on once
  /// `mergeStep` has nothing left to do.
  tasks::Async<void> endBulkLoad();
  /// Makes the index as fast to use as after the end of a load, but leaves it unfinished.
  tasks::Async<void> breakOffBulkLoad();
  /// The source of a bulk load that was begun, by this process or one that died, and never ended.
  tasks::Async<std::optional<std::int32_t>> unfinishedBulkLoad();
  /// Before and after many changes at once: merging of the full-text table and writing back the log
  /// wait, which makes writing twice as fast. Merging goes on once `mergeStep` has nothing left to
  /// do.
  tasks::Async<void> beginBurst();
  tasks::Async<void> endBurst();
  /// Merges a part of what deferred merging left in many pieces (well under a second); answers
  /// whether more is left. Searches are right before, and faster after.
  tasks::Async<bool> mergeStep();
  /// Whether merging waits, since a load or a burst of this process or of an earlier one.
  tasks::Async<bool> isMergingDeferred();

  /// From now on statements fail with SQLITE_INTERRUPT, those that run and those that follow; or no
  /// longer. Any thread.
  void setInterrupted(bool isInterrupted);

 private:
  std::unique_ptr<IndexDatabase> database_;
};

}  // namespace zelnor
