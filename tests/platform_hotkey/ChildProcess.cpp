#include "tests/platform_hotkey/ChildProcess.h"

#include <signal.h>
#include <sys/prctl.h>

#include <stdexcept>

namespace zelnor::test {

namespace {
constexpr int kStartMilliseconds = 30'000;
}

ChildProcess::ChildProcess(const QString& program, const QStringList& arguments) {
  process_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
  process_.setStandardErrorFile(QProcess::nullDevice());
  process_.start(program, arguments);
  while (!process_.canReadLine()) {
    if (!process_.waitForReadyRead(kStartMilliseconds)) {
      throw std::runtime_error(program.toStdString() + " did not start");
    }
  }
  firstLine_ = process_.readLine().trimmed().toStdString();
}

void ChildProcess::kill() {
  process_.kill();
  process_.waitForFinished(kStartMilliseconds);
}

}  // namespace zelnor::test
