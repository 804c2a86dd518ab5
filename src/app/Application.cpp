#include "app/Application.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <QApplication>

#include "app/AppEnvironment.h"
#include "app/Options.h"
#include "app/TerminationSignals.h"
#include "ui/Style.h"
#include "ui/panel/SearchView.h"

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

void connectView(AppEnvironment& environment, ui::SearchView& view) {
  QObject::connect(&environment, &AppEnvironment::indexStatusChanged, &view,
                   [&view](const IndexStatus& status) {
                     view.setIndexing(status.state.kind == IndexStatus::State::Kind::indexing,
                                      status.processedFiles, status.totalFiles);
                   });
  QObject::connect(&environment, &AppEnvironment::noticeChanged, &view, &ui::SearchView::setNotice);
  QObject::connect(&environment, &AppEnvironment::failed, &view, &ui::SearchView::setFailure);
  QObject::connect(&view, &ui::SearchView::closeRequested, &view, &QWidget::showMinimized);
}

int runWindow(Options options) {
  AppEnvironment environment(std::move(options));
  ui::SearchView view(ui::SearchPanelServices{
      environment.searchViewModel(), environment.bookmarkViewModel(), environment.desktop().files(),
      environment.desktop().clipboard(), &environment.desktop().icons()});
  connectView(environment, view);
  const TerminationSignals signals;
  QObject::connect(&signals, &TerminationSignals::received, qApp, &QCoreApplication::quit);
  view.show();
  environment.start();

  const int status = QApplication::exec();
  view.hide();
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
