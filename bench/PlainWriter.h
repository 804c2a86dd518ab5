#pragma once

#include <cstddef>
#include <string>

#include "store/FileRecord.h"
#include "store/Sqlite.h"

namespace zelnor::bench {

/// Fills an index the plain way, as the yardstick of our own: the same schema and settings, each
/// row by one statement whose trigger feeds the full-text table, batches in transactions,
/// checkpoints where SQLite makes them by default.
class PlainWriter {
 public:
  static constexpr std::size_t kBatchSize = 10'000;

  /// Makes a new index at `path`. Throws DatabaseError, as all below.
  explicit PlainWriter(const std::string& path);

  void add(const FileRecord& record);
  /// Commits the last batch.
  void finish();

 private:
  ConnectionHandle connection_;
  Statement insert_;
  std::size_t inBatch_ = 0;
};

}  // namespace zelnor::bench
