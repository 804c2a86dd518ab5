#include "tests/desktop/Session.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

#include <QImage>
#include <QStandardPaths>

#include "tests/desktop/Waiting.h"
#include "tests/desktop/XClient.h"

namespace zelnor::test {

namespace {

constexpr int kStartPatience = 20'000;  // ms

QString text(const std::string& bytes) { return QString::fromStdString(bytes); }

std::unique_ptr<QProcess> spawn(const QString& program, const QStringList& arguments,
                                const QProcessEnvironment& environment, const QString& log) {
  auto process = std::make_unique<QProcess>();
  process->setProcessEnvironment(environment);
  process->setStandardErrorFile(log, QIODevice::Append);
  process->setStandardInputFile(QProcess::nullDevice());
  process->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
  process->start(program, arguments);
  if (!process->waitForStarted(kStartPatience)) {
    throw std::runtime_error("cannot start " + program.toStdString());
  }
  return process;
}

QByteArray firstLine(QProcess& process) {
  if (!process.waitForReadyRead(kStartPatience)) {
    throw std::runtime_error(process.program().toStdString() + " says nothing");
  }
  return process.readLine().trimmed();
}

}  // namespace

Session& Session::instance() {
  static Session session;
  return session;
}

Session::Session() : environment_(QProcessEnvironment::systemEnvironment()) {
  for (const auto* name : {"WAYLAND_DISPLAY", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                           "XDG_CURRENT_DESKTOP", "QT_QPA_PLATFORM", "SESSION_MANAGER"}) {
    environment_.remove(QString::fromLatin1(name));
  }
  const auto log = text(folder_ / "session.log");
  server_ = spawn(QStringLiteral("Xvfb"),
                  {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                   QStringLiteral("0"), QStringLiteral("1280x800x24"), QStringLiteral("-noreset"),
                   QStringLiteral("-nolisten"), QStringLiteral("tcp")},
                  environment_, log);
  const auto display = ":" + firstLine(*server_);
  const auto runtime = folder_.folder("run");
  ::chmod(runtime.c_str(), S_IRWXU);
  environment_.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(display));
  environment_.insert(QStringLiteral("XDG_RUNTIME_DIR"), text(runtime));
  environment_.insert(QStringLiteral("HOME"), text(folder_.path()));
  environment_.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
  environment_.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
  bus_ = spawn(
      QStringLiteral("dbus-daemon"),
      {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address"),
       QStringLiteral("--address=unix:path=") + text(runtime) + QStringLiteral("/bus")},
      environment_, log);
  const auto address = firstLine(*bus_);
  environment_.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString::fromLatin1(address));
  qputenv("DISPLAY", display);
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);
  qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(runtime));
  windowManager_ = spawn(QStringLiteral("openbox"), {}, environment_, log);
  XClient client;
  if (!waitUntil([&] { return client.hasWindowManager(); })) {
    throw std::runtime_error("no window manager");
  }
}

Session::~Session() {
  for (auto* process : {windowManager_.get(), bus_.get(), server_.get()}) {
    process->terminate();
    process->waitForFinished(kStartPatience);
  }
}

std::unique_ptr<QProcess> Session::start(const QString& program, const QStringList& arguments,
                                         const std::string& home, const std::string& log) {
  auto environment = environment_;
  environment.insert(QStringLiteral("HOME"), text(home));
  auto process = spawn(program, arguments, environment, text(log));
  return process;
}

int Session::run(const QString& program, const QStringList& arguments, const std::string& home,
                 const std::string& log) {
  const auto process = start(program, arguments, home, log);
  return process->waitForFinished(kStartPatience) ? process->exitCode() : -1;
}

void Session::saveScreen(const std::string& path) { XClient().screen().save(text(path)); }

}  // namespace zelnor::test
