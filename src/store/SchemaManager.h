#pragma once

#include <string>

struct sqlite3;

namespace zelnor {

/// The schema of the index, version 1, and the settings of a connection. Every operation throws
/// DatabaseError and stops at its first failing statement; every statement may be repeated on an
/// index that is set up already.
class SchemaManager {
 public:
  /// Runs one statement, or several separated by semicolons. Throws execFailed with SQLite's
  /// message.
  static void exec(sqlite3* db, const std::string& sql);

  /// Write-ahead logging and the memory limits, for every connection.
  static void enableWAL(sqlite3* db);
  /// The settings of a connection that only reads: what of the above writes nothing.
  static void tuneReader(sqlite3* db);
  static void createTables(sqlite3* db);
  static void createIndexes(sqlite3* db);
  /// The opposite of `createIndexes`.
  static void dropIndexes(sqlite3* db);
};

}  // namespace zelnor
