#include "ui/window/WindowShadow.h"

#include <algorithm>
#include <cmath>

#include <QImage>
#include <QPainter>
#include <QPainterPath>

namespace zelnor::ui {

namespace {

/// It falls a little: light comes from above.
constexpr int kDrop = 6;
constexpr double kDarkness = 0.26;
constexpr int kHairline = 36;  // of 255
/// From the edge of the image to the part that is stretched.
constexpr int kBorder = 2 * WindowShadow::kReach + 8;
constexpr int kMiddle = 2;

/// How far `point` is from a rounded rectangle around the middle of a square; 0 inside.
double distanceFrom(QPointF point, double halfSide, double radius) {
  const double x = std::max(std::abs(point.x()) - (halfSide - radius), 0.0);
  const double y = std::max(std::abs(point.y()) - (halfSide - radius), 0.0);
  return std::max(std::hypot(x, y) - radius, 0.0);
}

/// `side` and `radius` in device pixels, as `scale` makes them.
QImage drawShadow(int side, double radius, double scale) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  const double reach = WindowShadow::kReach * scale;
  const double halfSurface = side / 2.0 - reach;
  for (int y = 0; y < side; ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < side; ++x) {
      const QPointF fromMiddle(x + 0.5 - side / 2.0, y + 0.5 - side / 2.0);
      const double away = distanceFrom(fromMiddle, halfSurface, radius) / reach;
      const double left = std::max(1 - away, 0.0);
      line[x] = qRgba(0, 0, 0, static_cast<int>(std::lround(255 * kDarkness * left * left * left)));
    }
  }
  return image;
}

}  // namespace

void WindowShadow::paint(QPainter& painter, const QRect& surface, int radius) {
  const double scale = painter.device()->devicePixelRatioF();
  constexpr int kSide = 2 * kBorder + kMiddle;
  if (scale != scale_) {
    scale_ = scale;
    const int side = static_cast<int>(std::lround(kSide * scale));
    image_ = QPixmap::fromImage(drawShadow(side, radius * scale, scale));
  }
  QPainterPath around;
  around.addRect(QRectF(surface).adjusted(-2 * kReach, -2 * kReach, 2 * kReach, 2 * kReach));
  around.addRoundedRect(surface, radius, radius);
  painter.save();
  painter.setClipPath(around, Qt::IntersectClip);
  const QRect outer = surface.adjusted(-kReach, -kReach, kReach, kReach).translated(0, kDrop);
  // Nine pieces: the corners as they are, the edges and the middle stretched.
  const int columns[] = {outer.left(), outer.left() + kBorder, outer.right() + 1 - kBorder,
                         outer.right() + 1};
  const int rows[] = {outer.top(), outer.top() + kBorder, outer.bottom() + 1 - kBorder,
                      outer.bottom() + 1};
  constexpr int kCuts[] = {0, kBorder, kBorder + kMiddle, kSide};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const QRectF target(QPointF(columns[column], rows[row]),
                          QPointF(columns[column + 1], rows[row + 1]));
      const QRectF source(QPointF(kCuts[column], kCuts[row]) * scale,
                          QPointF(kCuts[column + 1], kCuts[row + 1]) * scale);
      painter.drawPixmap(target, image_, source);
    }
  }
  painter.restore();
  // The hairline that sets it off from what is as bright.
  painter.setPen(QColor(0, 0, 0, kHairline));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(surface).adjusted(-0.5, -0.5, 0.5, 0.5), radius + 0.5,
                          radius + 0.5);
}

}  // namespace zelnor::ui
