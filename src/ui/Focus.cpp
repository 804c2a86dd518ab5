#include "ui/Focus.h"

#include <QPainter>
#include <QWidget>

#include "ui/Palette.h"

namespace zelnor::ui {

namespace {
constexpr double kRing = 2;
}

bool showsFocus(const QWidget& widget) {
  return widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

void paintFocusRing(QPainter& painter, const QRectF& box, double radius) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  auto color = palette::kAccent;
  color.setAlphaF(0.6F);
  painter.setPen(QPen(color, kRing));
  painter.setBrush(Qt::NoBrush);
  constexpr double kInset = kRing / 2;
  painter.drawRoundedRect(box.adjusted(kInset, kInset, -kInset, -kInset), radius, radius);
  painter.restore();
}

}  // namespace zelnor::ui
