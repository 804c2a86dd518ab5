#include "ui/form/FormButton.h"

#include <QPainter>

#include "ui/Palette.h"

namespace zelnor::ui {

namespace {
constexpr int kSides = 10;
constexpr int kHeight = 26;
}  // namespace

FormButton::FormButton(const QString& title, type::Size size, QWidget* parent, Look look)
    : PlainButton(title, parent), look_(look) {
  setFont(type::font(size));
}

QSize FormButton::sizeHint() const {
  const int sides = look_ == Look::bordered ? kSides : 0;
  return {fontMetrics().horizontalAdvance(title()) + 2 * sides, type::scaled(kHeight)};
}

void FormButton::paint(QPainter& painter) {
  if (look_ == Look::bordered) paintBorder(painter);
  painter.setPen(textColor());
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, title());
}

void FormButton::paintBorder(QPainter& painter) {
  QColor fill = Qt::white;
  if (isEnabled() && isDown()) {
    fill = palette::kBar;
  } else if (isEnabled() && underMouse()) {
    fill = palette::kPanel;
  }
  painter.setPen(palette::kOutline);
  painter.setBrush(fill);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius(),
                          cornerRadius());
}

QColor FormButton::textColor() const {
  if (!isEnabled()) return palette::kFaintText;
  if (look_ == Look::bordered) return palette::kText;
  return underMouse() ? palette::kAccent.darker(120) : palette::kAccent;
}

}  // namespace zelnor::ui
