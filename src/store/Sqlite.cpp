#include "store/Sqlite.h"

#include "store/DatabaseError.h"
#include "store/SchemaManager.h"

namespace zelnor {

Statement::Statement(sqlite3* connection, std::string_view sql, bool persistent) {
  if (connection == nullptr) throw DatabaseError::prepareFailed(std::string(sql), SQLITE_ERROR);
  sqlite3_stmt* statement = nullptr;
  const int code =
      sqlite3_prepare_v3(connection, sql.data(), static_cast<int>(sql.size()),
                         persistent ? SQLITE_PREPARE_PERSISTENT : 0U, &statement, nullptr);
  handle_.reset(statement);
  if (code != SQLITE_OK || !handle_) throw DatabaseError::prepareFailed(std::string(sql), code);
}

void Statement::bind(int index, std::string_view text) {
  // An empty view may have no data, which SQLite would take for NULL.
  const char* data = text.data() != nullptr ? text.data() : "";
  const int code =
      sqlite3_bind_text64(handle_.get(), index, data, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  if (code != SQLITE_OK) throw DatabaseError::bindFailed(index, code);
}

void Statement::bind(int index, std::int64_t value) {
  const int code = sqlite3_bind_int64(handle_.get(), index, value);
  if (code != SQLITE_OK) throw DatabaseError::bindFailed(index, code);
}

void Statement::bindAll(std::span<const Binding> values) {
  int index = 0;
  for (const auto& value : values) {
    ++index;
    std::visit([&](const auto& alternative) { this->bind(index, alternative); }, value);
  }
}

bool Statement::step() {
  const int code = sqlite3_step(handle_.get());
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  throw DatabaseError::stepFailed(code);
}

void Statement::run() {
  reset();
  try {
    while (step()) {
    }
  } catch (...) {
    reset();
    throw;
  }
  // A statement left at its end would keep its cursors, and with them locks, until its next use.
  reset();
}

std::string_view Statement::text(int column) const {
  const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), column));
  if (data == nullptr) return {};
  return {data, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column))};
}

WriteTransaction::WriteTransaction(sqlite3* connection) : connection_(connection) {
  SchemaManager::exec(connection_, "BEGIN IMMEDIATE");
}

WriteTransaction::~WriteTransaction() {
  if (!committed_) sqlite3_exec(connection_, "ROLLBACK", nullptr, nullptr, nullptr);
}

void WriteTransaction::commit() {
  SchemaManager::exec(connection_, "COMMIT");
  committed_ = true;
}

}  // namespace zelnor
