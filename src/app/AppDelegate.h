#pragma once

#include <memory>

#include <QObject>
#include <QPointer>

#include "platform/FileOpener.h"
#include "platform/GlobalHotkey.h"
#include "platform/desktop/DesktopWindows.h"
#include "platform/desktop/tray/DesktopTrayItem.h"
#include "shell/GlobalHotkeyManager.h"
#include "tasks/Async.h"
#include "ui/settings/SettingsView.h"
#include "ui/tray/MenuBarManager.h"

namespace zelnor::app {

class AppEnvironment;
class SearchWindowController;

/// What happens when the program starts, while it runs and when it ends: the panel, the settings
/// window, and what brings them up. Main thread only.
class AppDelegate final : public QObject {
  Q_OBJECT

 public:
  /// `environment` outlives the delegate.
  explicit AppDelegate(AppEnvironment& environment);
  ~AppDelegate() override;

  /// Everything there is to do before the panel can be called; nothing in it waits.
  void applicationDidFinishLaunching();
  /// Ends the program, whatever its windows say: Qt's own quitting first asks them to close.
  static void terminate();
  /// Hides the windows and lets go of the hot key, while what runs comes to its end.
  void applicationWillTerminate();

  void showSearch(const platform::Activation& activation);
  /// Brings the settings window to the front; one that was closed is made anew.
  void showSettingsWindow(const platform::Activation& activation);
  /// Has `config` bring up the panel from now on.
  void reregisterHotkey(const platform::HotkeyConfiguration& config);

 private:
  void setUpMenuBar();
  void makePanel();
  void listen();
  [[nodiscard]] std::unique_ptr<ui::SettingsView> makeSettings();
  tasks::Async<void> checkPermissions();
  void openPermissionSettings();

  AppEnvironment& environment_;
  platform::DesktopTrayItem trayItem_;
  ui::MenuBarManager menuBar_;
  std::unique_ptr<platform::GlobalHotkey> hotkey_;
  GlobalHotkeyManager hotkeyManager_;
  platform::DesktopWindows windows_;
  std::unique_ptr<SearchWindowController> searchWindowController_;
  std::unique_ptr<ui::SettingsView> settingsWindow_;
  bool hasCheckedPermissions_ = false;
};

}  // namespace zelnor::app
