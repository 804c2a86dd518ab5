#include "ui/Glyphs.h"

#include <QPainterPath>
#include <QPen>

namespace zelnor::ui {

namespace {

/// Maps the unit square onto `rect` while it lives; lines are `width` of the square thick.
class UnitSquare {
 public:
  UnitSquare(QPainter& painter, const QRectF& rect) : painter_(painter) {
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.translate(rect.topLeft());
    painter_.scale(rect.width(), rect.height());
  }
  UnitSquare(const UnitSquare&) = delete;
  UnitSquare& operator=(const UnitSquare&) = delete;
  ~UnitSquare() { painter_.restore(); }

  void stroke(const QColor& color, qreal width) const {
    painter_.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter_.setBrush(Qt::NoBrush);
  }
  void fill(const QPainterPath& path, const QColor& color) const {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(color);
    painter_.drawPath(path);
  }

 private:
  QPainter& painter_;
};

}  // namespace

void paintMagnifier(QPainter& painter, const QRectF& rect, const QColor& color) {
  const UnitSquare unit(painter, rect);
  unit.stroke(color, 0.1);
  painter.drawEllipse(QRectF(0.08, 0.08, 0.6, 0.6));
  painter.drawLine(QPointF(0.6, 0.6), QPointF(0.92, 0.92));
}

void paintCross(QPainter& painter, const QRectF& rect, const QColor& color) {
  const UnitSquare unit(painter, rect);
  unit.stroke(color, 0.16);
  painter.drawLine(QPointF(0.1, 0.1), QPointF(0.9, 0.9));
  painter.drawLine(QPointF(0.9, 0.1), QPointF(0.1, 0.9));
}

void paintFolder(QPainter& painter, const QRectF& rect, const QColor& color) {
  const UnitSquare unit(painter, rect);
  QPainterPath folder;
  folder.addRoundedRect(QRectF(0.04, 0.26, 0.92, 0.6), 0.08, 0.08);
  QPainterPath tab;
  tab.addRoundedRect(QRectF(0.04, 0.14, 0.42, 0.3), 0.08, 0.08);
  unit.fill(folder.united(tab), color);
}

void paintDocument(QPainter& painter, const QRectF& rect, const QColor& color) {
  const UnitSquare unit(painter, rect);
  QPainterPath sheet;
  sheet.addRoundedRect(QRectF(0.18, 0.06, 0.64, 0.88), 0.06, 0.06);
  QPainterPath corner;
  corner.addPolygon(QPolygonF({{0.56, 0.0}, {1.0, 0.0}, {1.0, 0.34}, {0.56, 0.0}}));
  QPainterPath fold;
  fold.addPolygon(QPolygonF({{0.56, 0.1}, {0.56, 0.34}, {0.8, 0.34}, {0.56, 0.1}}));
  unit.fill(sheet.subtracted(corner).subtracted(fold), color);
}

}  // namespace zelnor::ui
