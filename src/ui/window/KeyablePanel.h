#pragma once

#include <array>
#include <optional>

#include <QPoint>
#include <QWidget>

#include "ui/window/WindowShadow.h"

namespace zelnor::ui {

class CornerCut;
class ResizeGrip;

/// A window without a frame that takes the keyboard whenever it is shown: a surface, rounded and
/// with a shadow where the screen is composited, moved by its background and resized at its edges
/// by the window system.
///
/// Sizes and places are those of the surface; around it the window has room for the shadow.
class KeyablePanel final : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kRadius = 12;
  /// How far beyond the surface its edges can be pulled at, where there is a margin.
  static constexpr int kGrip = 8;

  /// Takes `content`, whose minimum size becomes that of the surface.
  explicit KeyablePanel(QWidget* content);
  ~KeyablePanel() override;

  /// Whether what lies below shows through: else corners are square, and there is no shadow.
  void setComposited(bool isComposited);
  /// How much of the window at each side is no surface.
  [[nodiscard]] int margin() const { return margin_; }

  /// The place and size of the surface, in the coordinates of `QScreen`.
  [[nodiscard]] QRect frame() const;
  void setFrame(const QRect& frame);

 Q_SIGNALS:
  /// The margin is another one, or lies elsewhere in the window.
  void shadowChanged();
  /// The window manager wants the window closed; it stays.
  void closeRequested();
  /// Another window got the keyboard, which is none of the panel's own.
  void keyResigned();

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void place();
  [[nodiscard]] QRect surface() const;
  void resignUnlessOwn();

  QWidget* content_;
  WindowShadow shadow_;
  std::array<CornerCut*, 4> corners_;
  std::array<ResizeGrip*, 8> grips_;
  int margin_ = 0;
  bool hasBeenKey_ = false;          ///< since it was shown
  std::optional<QPoint> pressedAt_;  ///< on the background, until the panel moves
};

}  // namespace zelnor::ui
