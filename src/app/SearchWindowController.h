#pragma once

#include <functional>
#include <memory>

#include <QObject>

#include "platform/FileOpener.h"
#include "platform/desktop/DesktopWindows.h"

namespace zelnor {
class Preferences;
}
namespace zelnor::ui {
class KeyablePanel;
class SearchView;
struct SearchPanelServices;
}  // namespace zelnor::ui

namespace zelnor::app {

/// The floating search panel: made once, shown and hidden as often as the user likes, never
/// destroyed before the program ends. Remembers its frame between uses and between runs. Main
/// thread only.
class SearchWindowController final : public QObject {
  Q_OBJECT

 public:
  /// Makes the panel and places it; does not show it. `preferences` and `windows` outlive the
  /// controller.
  SearchWindowController(const ui::SearchPanelServices& services, Preferences& preferences,
                         platform::DesktopWindows& windows);
  ~SearchWindowController() override;

  [[nodiscard]] ui::SearchView& view() { return *view_; }
  [[nodiscard]] bool isShown() const;

  /// Shows the panel, before all other windows and with the keyboard. Neither moves it nor changes
  /// what it shows; a shown one stays shown.
  void showWindow(const platform::Activation& activation);
  /// Hides the panel and stores its frame.
  void close();
  /// Called after every close.
  void setOnClose(std::function<void()> onClose) { onClose_ = std::move(onClose); }

 private:
  void placePanel();
  void resignedKey();
  void keepOnScreen();
  void describeShadow();

  Preferences& preferences_;
  platform::DesktopWindows& windows_;
  std::unique_ptr<ui::KeyablePanel> panel_;
  ui::SearchView* view_;  ///< in the panel
  std::function<void()> onClose_;
};

}  // namespace zelnor::app
