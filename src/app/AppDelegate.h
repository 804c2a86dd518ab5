#pragma once

#include <memory>

#include <QObject>

#include "platform/FileOpener.h"
#include "platform/HotkeyConfiguration.h"

class QWidget;

namespace zelnor::app {

class AppEnvironment;
class SearchWindowController;

/// What happens when the program starts, while it runs and when it ends: the panel, the settings
/// window, and what brings them up. Main thread only.
class AppDelegate final : public QObject {
  Q_OBJECT

 public:
  /// `environment` is open, and outlives the delegate.
  explicit AppDelegate(AppEnvironment& environment);
  ~AppDelegate() override;

  /// Everything there is to do before the panel can be called; nothing in it waits.
  void applicationDidFinishLaunching();
  /// Stores what is still to be stored, and lets go of what other programs may want.
  void applicationWillTerminate();

  void showSearch(const platform::Activation& activation);
  /// The one settings window, which is made anew after it was closed.
  void showSettingsWindow(const platform::Activation& activation);
  /// Has `config` bring up the panel from now on.
  void reregisterHotkey(const platform::HotkeyConfiguration& config);

 private:
  void connectPanel();

  AppEnvironment& environment_;
  std::unique_ptr<SearchWindowController> searchWindowController_;
  std::unique_ptr<QWidget> settingsWindow_;
};

}  // namespace zelnor::app
