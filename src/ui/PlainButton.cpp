#include "ui/PlainButton.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/Focus.h"
#include "ui/Palette.h"
#include "ui/Symbol.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {
constexpr int kAroundSymbol = 6;
}

PlainButton::PlainButton(const QString& title, QWidget* parent) : QPushButton(parent) {
  setAccessibleName(title);
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
  setAutoDefault(false);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PlainButton::setTitle(const QString& title) {
  setAccessibleName(title);
  updateGeometry();
  update();
}

void PlainButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(font());
  paint(painter);
  if (showsFocus(*this)) paintFocusRing(painter, rect(), cornerRadius());
}

/// Return presses what has the keyboard, as Space does; with Ctrl it is for all of a sheet.
void PlainButton::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isReturn && !event->modifiers().testFlag(Qt::ControlModifier)) {
    click();
  } else {
    QPushButton::keyPressEvent(event);
  }
}

SymbolButton::SymbolButton(QLatin1String symbol, int symbolSize, const QString& title,
                           QWidget* parent)
    : PlainButton(title, parent),
      symbol_(symbol),
      color_(palette::kSecondaryText),
      symbolSize_(symbolSize) {
  setToolTip(title);
}

void SymbolButton::setSymbol(QLatin1String symbol, const QColor& color) {
  symbol_ = symbol;
  color_ = color;
  update();
}

QSize SymbolButton::sizeHint() const {
  const int side = type::scaled(symbolSize_) + 2 * kAroundSymbol;
  return {side, side};
}

void SymbolButton::paint(QPainter& painter) {
  if (underMouse()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::kChip);
    painter.drawRoundedRect(rect(), cornerRadius(), cornerRadius());
  }
  const int side = type::scaled(symbolSize_);
  QRectF box(0, 0, side, side);
  box.moveCenter(QRectF(rect()).center());
  paintSymbol(painter, box, symbol_, isDown() ? color_.darker() : color_);
}

}  // namespace zelnor::ui
