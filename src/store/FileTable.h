#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "store/FileRecord.h"
#include "store/Sqlite.h"

namespace zelnor {

/// Table `files` row by row, through statements that live as long as the connection. The full-text
/// table is another matter (`FullTextIndex`). Used inside a transaction; throws DatabaseError.
class FileTable {
 public:
  explicit FileTable(sqlite3* connection);

  /// The record in the row that `row`, which selects id, name, path, size, mtime, kind and inode,
  /// stands on.
  static FileRecord read(const Statement& row);

  /// What is stored for this path, if it is.
  std::optional<FileRecord> find(const std::string& path);
  std::int64_t largestId();

  /// Adds a row unless its path is taken; answers whether it did.
  bool insertNew(const FileRecord& record);
  /// Adds a row, in the place of that with the same path.
  void insertOrReplace(const FileRecord& record);
  void move(std::int64_t id, const std::string& path);
  void erase(std::int64_t id);
  void erase(const std::string& path);

 private:
  sqlite3* connection_;
  Statement insertStmt_;
  Statement deleteByPathStmt_;
  Statement deleteByInodeStmt_;
  Statement updateByInodeStmt_;
  Statement insertNew_;
  Statement find_;
  Statement move_;
  Statement erase_;
  Statement largestId_;
};

}  // namespace zelnor
