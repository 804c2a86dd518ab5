#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QLatin1String>
#include <QString>

#include "platform/FileOpener.h"

namespace zelnor::platform {
class ActivationSource;
class TrayItem;
}  // namespace zelnor::platform

namespace zelnor::ui {

class Menu;
class XEmbedTrayIcon;

/// Zelnor's place in the desktop's bar: a symbol, and behind it the menu that brings up the panel
/// or the settings, or quits. Where the bar knows no status notifiers, the symbol is in the older
/// tray of X11. Main thread only.
class MenuBarManager final {
 public:
  using Show = std::function<void(platform::Activation)>;

  /// Both outlive the manager. `activations` answers for what is chosen in a menu of our own.
  MenuBarManager(platform::TrayItem& item, platform::ActivationSource& activations);
  ~MenuBarManager();
  MenuBarManager(const MenuBarManager&) = delete;
  MenuBarManager& operator=(const MenuBarManager&) = delete;

  /// Puts the item into the bar, now or as soon as there is one, until the process ends. Once.
  void setup(Show onShowSearch, Show onShowSettings, std::function<void()> onQuit);

 private:
  struct Entry {
    QLatin1String symbol;
    QString title;  ///< empty for a separator
    QString key;    ///< of the shortcut, with Ctrl; empty if there is none
    Show chosen;
  };

  void buildMenu();
  void choose(const Entry& entry);
  bool popUp(int x, int y);
  void setShownByBar(bool isShown);

  platform::TrayItem& item_;
  platform::ActivationSource& activations_;
  std::vector<Entry> entries_;
  std::unique_ptr<Menu> menu_;
  std::unique_ptr<XEmbedTrayIcon> older_;  ///< where it is needed and possible
};

}  // namespace zelnor::ui
