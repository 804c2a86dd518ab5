#include "app/Application.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <QApplication>

#include "app/AppEnvironment.h"
#include "app/OpenFile.h"
#include "app/Options.h"
#include "app/TerminationSignals.h"
#include "ui/panel/SearchWindow.h"
#include "ui/Style.h"

namespace zelnor::app {

namespace {

constexpr int kNoDisplay = 2;
/// Longer would look like a program that hangs.
constexpr std::chrono::milliseconds kEndingPatience{900};

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

bool hasDisplay() {
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

void connectWindow(AppEnvironment& environment, ui::SearchWindow& window) {
  QObject::connect(&environment, &AppEnvironment::indexStatusChanged, &window,
                   [&window](const IndexStatus& status) {
                     window.setIndexing(status.state.kind == IndexStatus::State::Kind::indexing,
                                        status.processedFiles, status.totalFiles);
                   });
  QObject::connect(&environment, &AppEnvironment::noticeChanged, &window,
                   &ui::SearchWindow::setNotice);
  QObject::connect(&environment, &AppEnvironment::failed, &window, &ui::SearchWindow::setFailure);
  QObject::connect(&window, &ui::SearchWindow::openRequested, &window, openFile);
}

int runWindow(Options options) {
  AppEnvironment environment(std::move(options));
  ui::SearchWindow window(environment.searchViewModel());
  connectWindow(environment, window);
  const TerminationSignals signals;
  QObject::connect(&signals, &TerminationSignals::received, qApp, &QCoreApplication::quit);
  window.show();
  environment.start();

  const int status = QApplication::exec();
  window.hide();
  limitEnding(kEndingPatience);
  environment.shutDown();
  return status;
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
  QApplication::setDesktopFileName(QStringLiteral("zelnor"));
  ui::applyStyle(application);
  return runWindow(std::get<Options>(std::move(options)));
}

}  // namespace zelnor::app
