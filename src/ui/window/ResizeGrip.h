#pragma once

#include <QWidget>

namespace zelnor::ui {

/// An invisible strip along an edge, or a square at a corner, of a window that has no frame: pulled
/// at, it has the window system resize the window.
class ResizeGrip final : public QWidget {
  Q_OBJECT

 public:
  ResizeGrip(Qt::Edges edges, QWidget* window);

  /// Lies over `edges` of `surface`, reaching `inside` and `outside` of it.
  void placeAround(const QRect& surface, int inside, int outside);

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  const Qt::Edges edges_;
};

}  // namespace zelnor::ui
