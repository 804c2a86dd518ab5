#include "ui/panel/TypeChip.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/Focus.h"
#include "ui/Palette.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {
constexpr int kChipPadding = 10;
constexpr int kChipMargin = 5;
constexpr int kTextHeight = 14;
constexpr double kChipRadius = 12;

QFont fontOf(bool isActive) {
  return type::font(type::kLabel, isActive ? QFont::Medium : QFont::Normal);
}
}  // namespace

TypeChip::TypeChip(const QString& label, QWidget* parent) : ChoiceButton(label, parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

/// The same whether it is active or not, so that its neighbours stay where they are.
QSize TypeChip::sizeHint() const {
  return {QFontMetrics(fontOf(/*isActive=*/true)).horizontalAdvance(label()) + 2 * kChipPadding,
          type::scaled(kTextHeight) + 2 * kChipMargin};
}

void TypeChip::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QColor idle = underMouse() ? palette::kOutline : palette::kChip;
  painter.setBrush(isChecked() ? palette::kAccent : idle);
  painter.drawRoundedRect(rect(), kChipRadius, kChipRadius);
  painter.setFont(fontOf(isChecked()));
  painter.setPen(isChecked() ? QColor(Qt::white) : palette::kSecondaryText);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, label());
  if (showsFocus(*this)) {
    paintFocusRing(painter, rect(), kChipRadius);
    if (isChecked()) {
      painter.setPen(QPen(Qt::white, 1));
      painter.setBrush(Qt::NoBrush);
      painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), kChipRadius - 2,
                              kChipRadius - 2);
    }
  }
}

}  // namespace zelnor::ui
