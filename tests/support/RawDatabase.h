#pragma once

#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>

#include <sqlite3.h>

namespace zelnor::test {

/// A second look at an index, past the code under test: plain SQL on a connection of its own.
class RawDatabase {
 public:
  /// Waits for the locks of others.
  explicit RawDatabase(const std::string& path) {
    if (sqlite3_open(path.c_str(), &connection_) != SQLITE_OK)
      throw std::runtime_error("cannot open " + path);
    constexpr int kPatienceMilliseconds = 5000;
    sqlite3_busy_timeout(connection_, kPatienceMilliseconds);
  }
  RawDatabase(const RawDatabase&) = delete;
  RawDatabase& operator=(const RawDatabase&) = delete;
  ~RawDatabase() { sqlite3_close_v2(connection_); }

  [[nodiscard]] sqlite3* handle() const { return connection_; }

  void exec(const std::string& sql) const {
    if (sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sql + ": " + sqlite3_errmsg(connection_));
    }
  }
  /// The first value that the statement yields, or why there is none.
  [[nodiscard]] std::string text(const std::string& sql) const {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(connection_, sql.c_str(), -1, &statement, nullptr);
    const int code = sqlite3_step(statement);
    const auto* const value = sqlite3_column_text(statement, 0);
    std::ostringstream result;
    if (value != nullptr) {
      result << reinterpret_cast<const char*>(value);
    } else {
      result << (code == SQLITE_ROW || code == SQLITE_DONE ? "(no row)"
                                                           : sqlite3_errmsg(connection_));
    }
    sqlite3_finalize(statement);
    return result.str();
  }
  [[nodiscard]] std::int64_t integer(const std::string& sql) const { return std::stoll(text(sql)); }
  /// How many rows the full-text table finds for a phrase.
  [[nodiscard]] std::int64_t matches(const std::string& phrase) const {
    return integer("SELECT count(*) FROM files_fts WHERE files_fts MATCH '\"" + phrase + "\"'");
  }
  /// SQLite's check of the file, and FTS5's of the full-text table against table `files`.
  [[nodiscard]] bool isSound() const { return complaint().empty(); }
  /// What these checks find wrong; empty if they find nothing.
  [[nodiscard]] std::string complaint() const {
    auto answer = text("PRAGMA integrity_check");
    if (answer != "ok") return answer;
    answer.clear();
    const int code = sqlite3_exec(
        connection_, "INSERT INTO files_fts(files_fts, rank) VALUES('integrity-check', 1)", nullptr,
        nullptr, nullptr);
    if (code != SQLITE_OK) answer = sqlite3_errmsg(connection_);
    return answer;
  }

 private:
  sqlite3* connection_ = nullptr;
};

}  // namespace zelnor::test
