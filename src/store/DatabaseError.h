#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace zelnor {

/// A failure of the index store. `what()` is the description shown to the user; `code` is SQLite's
/// result code.
class DatabaseError : public std::runtime_error {
 public:
  enum class Case : std::uint8_t { openFailed, execFailed, prepareFailed, stepFailed, bindFailed };

  static DatabaseError openFailed(std::string path, int code);
  static DatabaseError execFailed(std::string sql, std::string message, int code);
  static DatabaseError prepareFailed(std::string sql, int code);
  static DatabaseError stepFailed(int code);
  /// `index` is the parameter's position, from 1.
  static DatabaseError bindFailed(int index, int code);

  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] int code() const { return code_; }
  /// The path that was opened or the statement that failed; empty for the others.
  [[nodiscard]] const std::string& subject() const { return subject_; }
  /// The position of the parameter that could not be bound; 0 for the others.
  [[nodiscard]] int index() const { return index_; }

 private:
  DatabaseError(Case which, int code, std::string subject, int index,
                const std::string& description)
      : std::runtime_error(description),
        case_(which),
        code_(code),
        subject_(std::move(subject)),
        index_(index) {}

  Case case_;
  int code_;
  std::string subject_;
  int index_;
};

}  // namespace zelnor
