#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QProcess>
#include <QString>

namespace zelnor::test {

/// A session bus of the test's own, which this process and those that it starts take for theirs. It
/// has the same address every time, without the id of the daemon: libdbus asks once in a process.
class PrivateBus {
 public:
  PrivateBus() { start(); }
  ~PrivateBus() {
    stop();
    before_.isNull() ? qunsetenv(kVariable) : qputenv(kVariable, before_);
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  void start() {
    QStringList arguments{QStringLiteral("--session"), QStringLiteral("--nofork"),
                          QStringLiteral("--print-address")};
    auto& address = addressOfAll();
    if (!address.isEmpty()) arguments << QStringLiteral("--address=") + address;
    daemon_.start(QStringLiteral("dbus-daemon"), arguments);
    ASSERT_TRUE(daemon_.waitForReadyRead(kPatience)) << "no dbus-daemon";
    const auto line = daemon_.readLine().trimmed();
    address = QString::fromLatin1(line.left(line.indexOf(",guid")));
    qputenv(kVariable, address.toLatin1());
  }
  void stop() {
    daemon_.terminate();
    daemon_.waitForFinished(kPatience);
  }

 private:
  static QString& addressOfAll() {
    static QString address;
    return address;
  }

  static constexpr const char* kVariable = "DBUS_SESSION_BUS_ADDRESS";
  static constexpr int kPatience = 20'000;

  const QByteArray before_ = qgetenv(kVariable);
  QProcess daemon_;
};

}  // namespace zelnor::test
