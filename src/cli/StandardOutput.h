#pragma once

#include <string>
#include <string_view>

namespace zelnor::cli {

/// Standard output, buffered. Every operation throws std::system_error when nothing can be written
/// any more, of `std::errc::broken_pipe` when the reader has gone.
class StandardOutput {
 public:
  StandardOutput();

  [[nodiscard]] bool isTerminal() const { return isTerminal_; }
  void write(std::string_view text);
  void flush();

 private:
  std::string buffer_;
  bool isTerminal_;
};

}  // namespace zelnor::cli
