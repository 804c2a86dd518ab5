#pragma once

#include <QWidget>

#include "ui/window/WindowShadow.h"

namespace zelnor::ui {

/// Makes a corner of a window round: lies over the square corner of what the window holds, takes it
/// away, and draws the shadow that is seen there instead. Lets the mouse through.
class CornerCut final : public QWidget {
  Q_OBJECT

 public:
  CornerCut(Qt::Corner corner, WindowShadow& shadow, QWidget* window);

  /// Lies over its corner of `surface`, whose corners are to have `radius`.
  void placeOn(const QRect& surface, int radius);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Qt::Corner corner_;
  WindowShadow& shadow_;
  QRect surface_;  ///< in coordinates of the window
  int radius_ = 0;
};

}  // namespace zelnor::ui
