#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include <sqlite3.h>

#include "store/SelectStatement.h"

namespace zelnor {

/// Closes a connection; statements still open keep it alive until they are finalised.
struct ConnectionCloser {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using ConnectionHandle = std::unique_ptr<sqlite3, ConnectionCloser>;

/// A prepared statement. Errors are DatabaseErrors.
class Statement {
 public:
  /// Compiles the whole of `sql`. Throws prepareFailed. A `persistent` statement lives long; SQLite
  /// allocates it accordingly.
  Statement(sqlite3* connection, std::string_view sql, bool persistent = false);

  /// Makes the statement ready for its next run. Parameters keep their values.
  void reset() { sqlite3_reset(handle_.get()); }

  /// Binds parameter `index` (from 1). Text is copied by SQLite. Throws bindFailed.
  void bind(int index, std::string_view text);
  void bind(int index, std::int64_t value);
  /// Binds `values` to the parameters from the first on.
  void bindAll(std::span<const Binding> values);

  /// Runs to the next row; false at the end. Throws stepFailed.
  bool step();
  /// Runs a statement that yields no rows of interest to its end, from its start.
  void run();

  [[nodiscard]] std::int64_t integer(int column) const {
    return sqlite3_column_int64(handle_.get(), column);
  }
  /// Bytes of a text column, valid until the next step; no data pointer for NULL.
  [[nodiscard]] std::string_view text(int column) const;

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, Finalizer> handle_;
};

/// A write transaction. Unless it was committed it is rolled back, and errors of that are ignored:
/// the error that led there is the one that counts.
class WriteTransaction {
 public:
  /// Takes the write lock at once, so that a batch fails before its first row or not at all for
  /// want of a lock.
  explicit WriteTransaction(sqlite3* connection);
  WriteTransaction(const WriteTransaction&) = delete;
  WriteTransaction& operator=(const WriteTransaction&) = delete;
  ~WriteTransaction();
  void commit();

 private:
  sqlite3* connection_;
  bool committed_ = false;
};

}  // namespace zelnor
