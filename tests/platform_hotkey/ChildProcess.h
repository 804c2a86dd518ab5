#pragma once

#include <string>

#include <QProcess>
#include <QStringList>

namespace zelnor::test {

/// A server that a test needs; it ends with the value, and with the test program at the latest.
class ChildProcess {
 public:
  /// Starts it and waits for the first line that it writes; throws if there is none.
  ChildProcess(const QString& program, const QStringList& arguments);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess() { kill(); }

  [[nodiscard]] const std::string& firstLine() const { return firstLine_; }
  void kill();

 private:
  QProcess process_;
  std::string firstLine_;
};

}  // namespace zelnor::test
