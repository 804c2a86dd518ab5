#pragma once

#include <QObject>
#include <QRect>

#include "platform/FileOpener.h"

class QWindow;

namespace zelnor::platform {

/// What a window without a frame asks of the window system beyond what Qt does for it. Main thread
/// only. Without effect where the window system has no such thing.
///
/// On X11 by the Extended Window Manager Hints, on Wayland by xdg-activation.
class DesktopWindows final : public QObject {
  Q_OBJECT

 public:
  DesktopWindows();
  ~DesktopWindows() override;

  /// Whether what lies below a window shows through where it is transparent.
  [[nodiscard]] bool isComposited() const { return isComposited_; }

  /// Keeps a window that is not shown yet out of task bar, pager and window switcher. To be
  /// repeated before it is shown again.
  void keepOutOfTaskBar(QWindow& window);
  /// Says that a margin of the window at each side is shadow: not part of it for placing, and open
  /// to the mouse except for `grip` next to the rest. Pixels at scale 1.
  void setShadow(QWindow& window, int margin, int grip);
  /// Brings a shown window to the current desktop and to the front, and has it get the keyboard.
  /// `activation` says that the user asked for it.
  void activate(QWindow& window, const Activation& activation);
  /// Has a window that was hidden just now not count as the one with the keyboard any longer, so
  /// that it is told when it gets it back, however soon.
  void hidden(const QWindow& window);

 Q_SIGNALS:
  void compositedChanged(bool isComposited);

 private:
  class X11;

  void setComposited(bool isComposited);

  std::unique_ptr<X11> x11_;  ///< nothing on other window systems
  bool isComposited_ = true;
};

}  // namespace zelnor::platform
