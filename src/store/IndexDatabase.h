#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "store/FileChanges.h"
#include "store/FileRecord.h"
#include "store/SelectStatement.h"
#include "store/Sqlite.h"
#include "store/StatementCache.h"

namespace zelnor {

/// One connection to the index, used by one thread at a time; every operation blocks and throws
/// DatabaseError.
///
/// The triggers of the schema keep the full-text table in step row by row, for whoever else writes
/// to the file. This connection suspends them and feeds the full-text table itself, once per batch
/// and in the order of row ids, in the same transaction: a statement that fires a trigger can abort
/// halfway, so FTS5 flushes its pending terms before each one, which makes the row-by-row way
/// several times slower.
class IndexDatabase {
 public:
  /// Creates folder and file if missing and sets up the schema, or leaves a foreign database as it
  /// was.
  static IndexDatabase openForWriting(const std::string& folder);
  /// Writes nothing; the file must exist.
  static IndexDatabase openForReading(const std::string& folder);

  [[nodiscard]] const std::string& path() const { return path_; }

  RowDifference batchInsert(std::span<const FileRecord> records);
  void deleteByPaths(std::span<const std::string> paths);
  RowDifference apply(FileChanges changes);
  std::int64_t totalFileCount();
  std::vector<FileRecord> search(const SelectStatement& select, std::int64_t limit,
                                 const std::stop_token& stop = {});
  /// Like `search`, but an error while stepping is an error.
  std::vector<FileRecord> allRecords(const SelectStatement& select);
  std::int64_t searchCount(const SelectStatement& select, const std::stop_token& stop = {});
  void rebuildFTS();
  void clearAll();
  std::vector<FileRecord> lacking(std::vector<FileRecord> records);

  void beginBulkLoad(std::int32_t source);
  void endBulkLoad();
  void breakOffBulkLoad();
  std::optional<std::int32_t> unfinishedBulkLoad();
  void beginBurst();
  void endBurst();
  bool mergeStep();
  bool isMergingDeferred();

  /// Whether statements fail, those that run now and those that follow. For any thread.
  void setInterrupted(bool isInterrupted);

 private:
  struct Writer;
  struct Interruption;
  IndexDatabase(std::string path, ConnectionHandle connection);

  /// Writes the log back and shortens its file; waits for readers no longer than the busy time-out,
  /// and does not fail if they stay.
  void checkpoint();
  void makeIndexes();

  std::string path_;
  std::unique_ptr<Interruption> interruption_;
  ConnectionHandle connection_;
  StatementCache selects_;
  /// Statements that live as long as the connection; none in a connection that reads.
  std::unique_ptr<Writer> writer_;

 public:
  IndexDatabase(IndexDatabase&&) noexcept;
  IndexDatabase& operator=(IndexDatabase&&) noexcept;
  ~IndexDatabase();
};

}  // namespace zelnor
