#include "ui/panel/FilterRadioRow.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/Focus.h"
#include "ui/Palette.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kIndicator = 12;
constexpr int kMarkGap = 8;
constexpr int kRadioHeight = 15;
constexpr int kRingSpace = 3;
constexpr double kStroke = 1.5;

void paintIndicator(QPainter& painter, const QRectF& circle, bool isSelected, bool isNear) {
  const QColor idle = isNear ? palette::kFaintText : palette::kOutline;
  painter.setPen(QPen(isSelected ? palette::kAccent : idle, kStroke));
  painter.setBrush(isSelected ? QBrush(palette::kAccent) : QBrush(Qt::NoBrush));
  constexpr double kInset = kStroke / 2;
  painter.drawEllipse(circle.adjusted(kInset, kInset, -kInset, -kInset));
  if (!isSelected) return;
  QRectF dot(0, 0, circle.width() / 2, circle.height() / 2);
  dot.moveCenter(circle.center());
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  painter.drawEllipse(dot);
}

}  // namespace

FilterRadioRow::FilterRadioRow(const QString& label, QWidget* parent)
    : ChoiceButton(label, parent) {
  setFont(type::font(type::kLabel));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize FilterRadioRow::sizeHint() const {
  return {
      type::scaled(kIndicator) + kMarkGap + fontMetrics().horizontalAdvance(label()) + kRingSpace,
      type::scaled(kRadioHeight)};
}

void FilterRadioRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const int side = type::scaled(kIndicator);
  paintIndicator(painter, QRectF(0, (height() - side) / 2.0, side, side), isChecked(),
                 underMouse());
  const QRect text = rect().adjusted(side + kMarkGap, 0, 0, 0);
  painter.setFont(font());
  painter.setPen(isChecked() ? palette::kText : palette::kSecondaryText);
  painter.drawText(text, Qt::AlignVCenter | Qt::TextSingleLine,
                   fontMetrics().elidedText(label(), Qt::ElideRight, text.width()));
  if (showsFocus(*this)) {
    const int width = std::min(fontMetrics().horizontalAdvance(label()) + 2 * kRingSpace,
                               text.width() + kRingSpace);
    paintFocusRing(painter, QRect(text.left() - kRingSpace, 0, width, height()), kRingSpace);
  }
}

}  // namespace zelnor::ui
