#include "ui/window/ResizeGrip.h"

#include <QMouseEvent>
#include <QWindow>

namespace zelnor::ui {

namespace {

Qt::CursorShape cursorFor(Qt::Edges edges) {
  if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge)) {
    return Qt::SizeFDiagCursor;
  }
  if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge)) {
    return Qt::SizeBDiagCursor;
  }
  const bool isVertical = edges.testFlag(Qt::LeftEdge) || edges.testFlag(Qt::RightEdge);
  return isVertical ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

struct Span {
  int from;
  int to;
};

/// Where a grip lies in one direction, on a surface that goes from `surface.from` to `surface.to`.
Span spanAlong(Span surface, bool isAtStart, bool isAtEnd, int inside, int outside) {
  if (isAtStart) return {surface.from - outside, surface.from + inside};
  if (isAtEnd) return {surface.to - inside, surface.to + outside};
  return {surface.from + inside, surface.to - inside};
}

}  // namespace

ResizeGrip::ResizeGrip(Qt::Edges edges, QWidget* window) : QWidget(window), edges_(edges) {
  setCursor(cursorFor(edges));
}

void ResizeGrip::placeAround(const QRect& surface, int inside, int outside) {
  const auto across =
      spanAlong({surface.left(), surface.right() + 1}, edges_.testFlag(Qt::LeftEdge),
                edges_.testFlag(Qt::RightEdge), inside, outside);
  const auto down = spanAlong({surface.top(), surface.bottom() + 1}, edges_.testFlag(Qt::TopEdge),
                              edges_.testFlag(Qt::BottomEdge), inside, outside);
  setGeometry(across.from, down.from, across.to - across.from, down.to - down.from);
  raise();
}

void ResizeGrip::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) window()->windowHandle()->startSystemResize(edges_);
}

}  // namespace zelnor::ui
