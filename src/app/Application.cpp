#include "app/Application.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include "app/AppDelegate.h"
#include "app/AppEnvironment.h"
#include "app/Options.h"
#include "app/TerminationSignals.h"
#include "platform/FileLock.h"
#include "platform/UserFolders.h"
#include "platform/desktop/SessionApplication.h"
#include "ui/Style.h"

namespace zelnor::app {

namespace {

constexpr int kNoDisplay = 2;
/// Longer would look like a program that hangs.
constexpr std::chrono::milliseconds kEndingPatience{900};

/// An index that takes longer to open is on a slow disk: the panel is there before it.
constexpr std::chrono::milliseconds kOpeningPatience{2000};

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

bool hasDisplay() {
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

/// What the desktop gave the process that started this one, as proof that the user asked for it.
platform::Activation takeActivation() {
  platform::Activation activation;
  for (const char* variable : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
    if (activation.token.empty() && isSet(variable)) activation.token = std::getenv(variable);
    ::unsetenv(variable);  // not meant for what is started from here
  }
  return activation;
}

/// Nothing, after saying so, if another process has it.
std::optional<platform::FileLock> lockWithoutBus(const Options& options) {
  try {
    platform::createPrivateFolder(options.dataFolder);
    auto lock = platform::FileLock::tryAcquire(options.dataFolder + "/application.lock");
    std::fputs(lock ? "zelnor: no session bus; a second start cannot show this one's panel\n"
                    : "zelnor: already running, and there is no session bus to reach it\n",
               stderr);
    return lock;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "DatabaseManager init failed: %s\n", error.what());
    return std::nullopt;
  }
}

/// The other one shows itself, or does what this one was started for.
int handOver(platform::SessionApplication& session, const Options& options,
             const platform::Activation& activation) {
  if (!options.roots.empty()) {
    std::fputs("zelnor: already running; the folders given are not indexed\n", stderr);
  }
  if (options.isInBackground) return EXIT_SUCCESS;
  if (session.forward(options.action, activation)) return EXIT_SUCCESS;
  std::fputs("zelnor: already running, but it does not answer\n", stderr);
  return EXIT_FAILURE;
}

void act(AppDelegate& delegate, const std::string& action, const platform::Activation& activation) {
  using Session = platform::SessionApplication;
  if (action == Session::kQuit) {
    AppDelegate::terminate();
  } else if (action == Session::kPreferences) {
    delegate.showSettingsWindow(activation);
  } else if (action.empty() || action == Session::kSearch) {
    delegate.showSearch(activation);
  }
}

/// What others ask for while the program is still starting is done when it has started.
class Requests {
 public:
  void take(const std::string& action, const platform::Activation& activation) {
    if (delegate_ != nullptr) {
      act(*delegate_, action, activation);
    } else {
      waiting_.emplace_back(action, activation);
    }
  }
  /// From now on `delegate` does it; nobody does once that is null.
  void handTo(AppDelegate* delegate) {
    delegate_ = delegate;
    if (delegate == nullptr) return;
    for (const auto& [action, activation] : std::exchange(waiting_, {})) {
      act(*delegate, action, activation);
    }
  }

 private:
  AppDelegate* delegate_ = nullptr;
  std::vector<std::pair<std::string, platform::Activation>> waiting_;
};

int runFirst(Options options, Requests& requests) {
  const TerminationSignals signals;
  QObject::connect(&signals, &TerminationSignals::received, qApp, [&requests] {
    requests.take(platform::SessionApplication::kQuit, /*activation=*/{});
  });
  AppEnvironment environment(std::move(options));
  if (const auto failure = environment.open(kOpeningPatience)) {
    std::fprintf(stderr, "DatabaseManager init failed: %s\n", failure->c_str());
    limitEnding(kEndingPatience);
    environment.shutDown();
    return EXIT_FAILURE;
  }
  AppDelegate delegate(environment);
  delegate.applicationDidFinishLaunching();
  requests.handTo(&delegate);
  const int status = QApplication::exec();
  requests.handTo(nullptr);
  limitEnding(kEndingPatience);
  delegate.applicationWillTerminate();
  environment.shutDown();
  return status;
}

/// One process per user and session. One that keeps its index elsewhere is another program.
int runOnce(Options options) {
  using Standing = platform::SessionApplication::Standing;
  Requests requests;
  platform::SessionApplication session(
      platform::sessionBusAddress(),
      [&requests](const auto& action, const auto& given) { requests.take(action, given); });
  const auto activation = takeActivation();
  std::optional<platform::FileLock> lock;
  if (!options.isApart) {
    switch (session.claim()) {
      case Standing::second:
        return handOver(session, options, activation);
      case Standing::noBus:
        lock = lockWithoutBus(options);
        if (!lock) return EXIT_FAILURE;
        break;
      case Standing::first:
        break;
    }
  }
  if (options.action == platform::SessionApplication::kQuit) return EXIT_SUCCESS;
  if (!options.isInBackground) requests.take(options.action, activation);
  return runFirst(std::move(options), requests);
}

}  // namespace

int run(int argc, char** argv) {
  auto options = Options::parse(argc, argv);
  if (const int* status = std::get_if<int>(&options)) return *status;
  if (!hasDisplay()) {
    std::fputs(
        "zelnor: no display; set DISPLAY or WAYLAND_DISPLAY, or use zelnor-find in a terminal\n",
        stderr);
    return kNoDisplay;
  }
  // What follows the name is ours: Qt would take "-reverse" for its own, even after "--".
  int nameAlone = 1;
  QApplication application(nameAlone, argv);
  QApplication::setApplicationName(QStringLiteral("Zelnor"));
  QApplication::setDesktopFileName(QStringLiteral("org.zelnor.Zelnor"));
  ui::applyStyle(application);
  QTranslator dialogs;  // the texts in what Qt itself shows, such as the folder picker
  if (dialogs.load(QStringLiteral("qtbase_zh_CN"),
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(&dialogs);
  }
  QApplication::setQuitOnLastWindowClosed(false);
  return runOnce(std::get<Options>(std::move(options)));
}

}  // namespace zelnor::app
