#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "store/Sqlite.h"

namespace zelnor {

/// Compiled statements of one connection, kept for when the same text is run again: to compile a
/// search takes as long as to answer one that finds little. Used by one thread at a time.
class StatementCache {
 public:
  /// A statement while it is run. At its end it is reset, so that it holds no read transaction.
  class Run {
   public:
    explicit Run(Statement& statement) : statement_(statement) {}
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run() { statement_.reset(); }

    Statement& operator*() const { return statement_; }
    Statement* operator->() const { return &statement_; }

   private:
    Statement& statement_;
  };

  explicit StatementCache(sqlite3* connection) : connection_(connection) {}

  /// Compiles the statement if need be and binds its values. The same text may not be run twice at
  /// a time. Throws DatabaseError.
  Run run(const SelectStatement& select) {
    auto found = statements_.find(select.sql);
    if (found == statements_.end()) {
      if (statements_.size() >= kMost) statements_.clear();
      found =
          statements_.try_emplace(select.sql, connection_, select.sql, /*persistent=*/true).first;
    }
    found->second.bindAll(select.bindings);
    return Run(found->second);
  }

 private:
  /// The texts of all kinds of searches, sorted and filtered in all ways, are more; those that
  /// somebody uses are few.
  static constexpr std::size_t kMost = 50;

  sqlite3* connection_;
  std::unordered_map<std::string, Statement> statements_;
};

}  // namespace zelnor
