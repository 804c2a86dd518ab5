#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace zelnor::test {

/// A server that a test needs; it ends with the value, and with the test program at the latest.
class ChildProcess {
 public:
  /// Starts a program of the PATH with its arguments, and waits for the first line that it writes;
  /// throws if there is none.
  explicit ChildProcess(const std::vector<std::string>& command);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess() { kill(); }

  [[nodiscard]] const std::string& firstLine() const { return firstLine_; }
  void kill();

 private:
  pid_t process_ = -1;
  std::string firstLine_;
};

/// Runs a program to its end; answers whether it succeeded.
bool runProgram(const std::vector<std::string>& command);

}  // namespace zelnor::test
