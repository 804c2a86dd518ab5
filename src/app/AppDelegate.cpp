#include "app/AppDelegate.h"

#include <utility>

#include <asio/post.hpp>

#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QScreen>
#include <QWindow>

#include "app/AppEnvironment.h"
#include "app/SearchWindowController.h"
#include "platform/desktop/DesktopAccessCheck.h"
#include "platform/desktop/DesktopPermissionSettings.h"
#include "platform/desktop/hotkey/GlobalHotkeys.h"
#include "tasks/RunOn.h"
#include "ui/DisplayText.h"
#include "ui/panel/SearchView.h"

namespace zelnor::app {

namespace {

/// "~/.local/share/Zelnor/"
QString folderText(const std::string& folder, const std::string& home) {
  const bool isInHome = folder.starts_with(home + "/");
  return ui::displayText((isInHome ? "~" + folder.substr(home.size()) : folder) + "/");
}

/// On the screen that the user is at.
void centre(QWidget& window) {
  const auto* screen = QGuiApplication::screenAt(QCursor::pos());
  if (screen == nullptr) screen = window.screen();
  QRect frame(QPoint(), window.size());
  frame.moveCenter(screen->availableGeometry().center());
  window.move(frame.topLeft());
}

}  // namespace

AppDelegate::AppDelegate(AppEnvironment& environment)
    : environment_(environment),
      menuBar_(trayItem_, environment.desktop().activation()),
      hotkey_(platform::makeGlobalHotkey(environment.main(),
                                         QCoreApplication::applicationFilePath().toStdString())),
      hotkeyManager_(*hotkey_) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  setUpMenuBar();
  makePanel();
  // Another Zelnor, whose index is elsewhere, must not take the user's own one's place.
  if (!environment_.options().isApart) reregisterHotkey(environment_.preferences().hotkey());
  listen();
  environment_.startIndexing();
}

void AppDelegate::setUpMenuBar() {
  menuBar_.setup([this](const platform::Activation& activation) { showSearch(activation); },
                 [this](const platform::Activation& activation) { showSettingsWindow(activation); },
                 &AppDelegate::terminate);
}

void AppDelegate::makePanel() {
  auto& desktop = environment_.desktop();
  searchWindowController_ = std::make_unique<SearchWindowController>(
      ui::SearchPanelServices{environment_.searchViewModel(), environment_.bookmarkViewModel(),
                              desktop.files(), desktop.clipboard(), &desktop.icons()},
      environment_.preferences(), windows_);
}

void AppDelegate::reregisterHotkey(const platform::HotkeyConfiguration& config) {
  hotkeyManager_.registerHotkey(
      config, [this](const platform::Activation& activation) { showSearch(activation); });
}

void AppDelegate::listen() {
  auto* view = &searchWindowController_->view();
  const auto showStatus = [this, view](const IndexStatus& status) {
    view->setIndexing(status.state.kind == IndexStatus::State::Kind::indexing,
                      status.processedFiles, status.totalFiles);
    if (settingsWindow_) settingsWindow_->setStatus(status);
  };
  connect(&environment_, &AppEnvironment::indexStatusChanged, view, showStatus);
  connect(&environment_, &AppEnvironment::noticeChanged, view, &ui::SearchView::setNotice);
  connect(&environment_, &AppEnvironment::failed, view, &ui::SearchView::setFailure);
  connect(&environment_.preferences(), &Preferences::notStored, view,
          [view] { view->setNotice(QStringLiteral(u"设置无法保存，退出后将丢失")); });
  connect(view, &ui::SearchView::settingsRequested, this, [this] {
    environment_.desktop().activation().request(
        [this](const platform::Activation& activation) { showSettingsWindow(activation); });
  });
}

void AppDelegate::showSearch(const platform::Activation& activation) {
  searchWindowController_->showWindow(activation);
  if (std::exchange(hasCheckedPermissions_, true)) return;
  environment_.tasks().spawn([this](const std::stop_token&) { return checkPermissions(); });
}

/// Once per user, when the panel is first seen.
tasks::Async<void> AppDelegate::checkPermissions() {
  auto& preferences = environment_.preferences();
  if (preferences.permissionGuideShown()) co_return;
  const auto check = [] { return platform::DesktopAccessCheck().hasFullDiskAccess(); };
  const bool isGranted = co_await tasks::runOn(environment_.desktop().blocking(), check);
  if (isGranted) co_return;
  preferences.setPermissionGuideShown();
  searchWindowController_->view().showPermissionGuide([this] { openPermissionSettings(); });
}

void AppDelegate::openPermissionSettings() {
  const auto open = [this](const platform::Activation& activation) {
    asio::post(environment_.desktop().blocking(),
               [activation] { platform::DesktopPermissionSettings().open(activation); });
  };
  environment_.desktop().activation().request(open);
}

void AppDelegate::showSettingsWindow(const platform::Activation& activation) {
  if (!settingsWindow_ || !settingsWindow_->isVisible()) settingsWindow_ = makeSettings();
  settingsWindow_->setWindowState(settingsWindow_->windowState() & ~Qt::WindowMinimized);
  settingsWindow_->show();
  windows_.activate(*settingsWindow_->windowHandle(), activation);
}

std::unique_ptr<ui::SettingsView> AppDelegate::makeSettings() {
  const auto& options = environment_.options();
  auto settings = std::make_unique<ui::SettingsView>(ui::SettingsServices{
      .general = {.launchService = environment_.desktop().launchService(),
                  .preferences = environment_.preferences(),
                  .version = QStringLiteral(ZELNOR_VERSION),
                  .dataFolder = folderText(options.dataFolder, options.homeFolder)},
      .index = environment_.indexViewModel(),
      .bookmarks = environment_.bookmarkViewModel()});
  // Task bars of X11 that do not know the desktop entry; the panel is in none.
  settings->setWindowIcon(QIcon::fromTheme(QGuiApplication::desktopFileName()));
  settings->setStatus(environment_.indexStatus());
  centre(*settings);
  connect(settings.get(), &ui::SettingsView::hotkeyConfigChanged, this,
          &AppDelegate::reregisterHotkey);
  connect(settings.get(), &ui::SettingsView::isRecordingChanged, this,
          [this](bool isRecording) { hotkeyManager_.setSuspended(isRecording); });
  return settings;
}

void AppDelegate::terminate() {
  // An event loop that does not run yet cannot be ended: once it does, this is the first it hears.
  QMetaObject::invokeMethod(qApp, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
}

void AppDelegate::applicationWillTerminate() {
  searchWindowController_->close();
  if (settingsWindow_) settingsWindow_->hide();
  hotkeyManager_.unregister();
}

}  // namespace zelnor::app
