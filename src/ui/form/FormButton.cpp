#include "ui/form/FormButton.h"

#include <QPainter>

#include "ui/Palette.h"

namespace zelnor::ui {

namespace {
constexpr int kSides = 10;
constexpr int kHeight = 26;
}  // namespace

FormButton::FormButton(const QString& title, type::Size size, QWidget* parent)
    : PlainButton(title, parent) {
  setFont(type::font(size));
}

QSize FormButton::sizeHint() const {
  return {fontMetrics().horizontalAdvance(title()) + 2 * kSides, type::scaled(kHeight)};
}

void FormButton::paint(QPainter& painter) {
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
  painter.setPen(isEnabled() ? palette::kText : palette::kFaintText);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, title());
}

}  // namespace zelnor::ui
