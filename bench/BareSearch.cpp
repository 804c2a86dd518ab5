#include "bench/BareSearch.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <variant>

#include <sqlite3.h>

#include "store/DatabaseError.h"
#include "store/SchemaManager.h"

namespace zelnor::bench {
namespace {

struct Finalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, Finalizer>;

ConnectionHandle openForReading(const std::string& path) {
  sqlite3* connection = nullptr;
  const int code =
      sqlite3_open_v2(path.c_str(), &connection, SQLITE_OPEN_READONLY, /*zVfs=*/nullptr);
  ConnectionHandle handle(connection);
  if (code != SQLITE_OK) throw DatabaseError::openFailed(path, code);
  SchemaManager::tuneReader(connection);
  return handle;
}

void bind(sqlite3_stmt* statement, int index, const Binding& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    sqlite3_bind_text64(statement, index, text->data(), text->size(), SQLITE_STATIC, SQLITE_UTF8);
  } else {
    sqlite3_bind_int64(statement, index, std::get<std::int64_t>(value));
  }
}

/// Compiles `select`; it must outlive the statement, which borrows its texts.
StatementHandle prepare(sqlite3* connection, const SelectStatement& select) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(connection, select.sql.c_str(),
                                      static_cast<int>(select.sql.size()), &statement,
                                      /*pzTail=*/nullptr);
  if (code != SQLITE_OK) throw std::runtime_error(select.sql + ": " + sqlite3_errmsg(connection));
  int index = 0;
  for (const auto& value : select.bindings) bind(statement, ++index, value);
  return StatementHandle(statement);
}

bool step(sqlite3_stmt* statement) {
  const int code = sqlite3_step(statement);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  throw std::runtime_error(sqlite3_errstr(code));
}

void readColumns(sqlite3_stmt* row) {
  const int columns = sqlite3_column_count(row);
  for (int i = 0; i < columns; ++i) {
    if (sqlite3_column_type(row, i) == SQLITE_TEXT) {
      sqlite3_column_text(row, i);
    } else {
      sqlite3_column_int64(row, i);
    }
  }
}

}  // namespace

BareSearch::BareSearch(const std::string& data)
    : connection_(openForReading(data + "/index.sqlite")) {}

std::int64_t BareSearch::rows(const SelectStatement& select) const {
  const auto statement = prepare(connection_.get(), select);
  std::int64_t count = 0;
  for (; step(statement.get()); ++count) readColumns(statement.get());
  return count;
}

std::int64_t BareSearch::number(const SelectStatement& select) const {
  const auto statement = prepare(connection_.get(), select);
  return step(statement.get()) ? sqlite3_column_int64(statement.get(), /*iCol=*/0) : 0;
}

std::vector<std::string> BareSearch::sampleOfNames() const {
  constexpr std::int64_t kSampleSize = 5'000;
  const auto entries = number({.sql = "SELECT COUNT(*) FROM files", .bindings = {}});
  const SelectStatement spread{.sql = "SELECT name FROM files WHERE id % ? = 0",
                               .bindings = {std::max<std::int64_t>(entries / kSampleSize, 1)}};
  const auto statement = prepare(connection_.get(), spread);
  std::vector<std::string> names;
  while (step(statement.get())) {
    names.emplace_back(
        reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), /*iCol=*/0)));
  }
  return names;
}

}  // namespace zelnor::bench
