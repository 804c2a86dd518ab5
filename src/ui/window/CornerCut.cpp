#include "ui/window/CornerCut.h"

#include <QPainter>
#include <QPainterPath>

namespace zelnor::ui {

CornerCut::CornerCut(Qt::Corner corner, WindowShadow& shadow, QWidget* window)
    : QWidget(window), corner_(corner), shadow_(shadow) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void CornerCut::placeOn(const QRect& surface, int radius) {
  surface_ = surface;
  radius_ = radius;
  QRect square(0, 0, radius, radius);
  switch (corner_) {
    case Qt::TopLeftCorner:
      square.moveTopLeft(surface.topLeft());
      break;
    case Qt::TopRightCorner:
      square.moveTopRight(surface.topRight());
      break;
    case Qt::BottomLeftCorner:
      square.moveBottomLeft(surface.bottomLeft());
      break;
    case Qt::BottomRightCorner:
      square.moveBottomRight(surface.bottomRight());
      break;
  }
  setGeometry(square);
  raise();
}

void CornerCut::paintEvent(QPaintEvent* /*event*/) {
  const QRect surface = surface_.translated(-pos());
  QPainterPath outside;
  outside.addRect(rect());
  QPainterPath inside;
  inside.addRoundedRect(surface, radius_, radius_);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
  painter.fillPath(outside.subtracted(inside), Qt::black);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
  shadow_.paint(painter, surface, radius_);
}

}  // namespace zelnor::ui
