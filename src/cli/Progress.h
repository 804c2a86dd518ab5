#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace zelnor::cli {

/// Tells whoever sits at the terminal how far a rebuild is: one line on standard error that
/// changes. Silent where standard error is no terminal.
class Progress {
 public:
  Progress();

  void show(std::int64_t entries);
  /// Leaves a line that says how much it was and how long it took.
  void finish(std::int64_t entries);

 private:
  void replaceLine(const std::string& text) const;

  bool isShown_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// A number with its digits in groups of three: "1,125,085".
std::string grouped(std::int64_t number);

}  // namespace zelnor::cli
