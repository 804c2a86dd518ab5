#include "ui/panel/SearchBarParts.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include "ui/Palette.h"
#include "ui/Style.h"
#include "ui/Symbol.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {
constexpr double kPillRadius = 22;
constexpr int kMagnifier = 15;
constexpr int kMagnifierFrame = 18;
constexpr int kPulse = 1200;  // ms
constexpr double kDimmest = 0.3;
constexpr int kClearCircle = 16;
constexpr int kClearCross = 9;
constexpr int kClearTarget = 24;
constexpr int kClearTime = 150;  // ms
constexpr double kSmallest = 0.05;
constexpr int kToggleHeight = 24;
constexpr int kWindowButton = 24;
constexpr int kWindowCircle = 16;
constexpr int kToggleSides = 4;
}  // namespace

void Pill::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette::kBar);
  painter.drawRoundedRect(rect(), kPillRadius, kPillRadius);
}

Magnifier::Magnifier(QWidget* parent) : QWidget(parent) {
  setFixedSize(type::scaled(kMagnifierFrame), type::scaled(kMagnifierFrame));
  pulse_.setStartValue(1.0);
  pulse_.setKeyValueAt(0.5, kDimmest);
  pulse_.setEndValue(1.0);
  pulse_.setEasingCurve(QEasingCurve::InOutSine);
  pulse_.setLoopCount(-1);
  connect(&pulse_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    opacity_ = value.toDouble();
    update();
  });
}

void Magnifier::setPulsing(bool isPulsing) {
  const int time = motionTime(*this, kPulse);
  if (isPulsing && time > 0) {
    pulse_.setDuration(time);
    pulse_.start();
  } else {
    pulse_.stop();
    opacity_ = 1;
    update();
  }
}

void Magnifier::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setOpacity(opacity_);
  QRectF box(0, 0, type::scaled(kMagnifier), type::scaled(kMagnifier));
  box.moveCenter(QRectF(rect()).center());
  paintSymbol(painter, box, QLatin1String("magnifyingglass"), palette::kSecondaryText);
}

ClearButton::ClearButton(QWidget* parent) : PlainButton(QStringLiteral(u"清除"), parent) {
  setVisible(false);
  connect(&motion_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    shown_ = value.toDouble();
    update();
  });
  connect(&motion_, &QVariantAnimation::finished, this, [this] { setVisible(isShown_); });
}

void ClearButton::setShown(bool isShown) {
  if (isShown == isShown_) return;
  isShown_ = isShown;
  show();
  motion_.stop();
  motion_.setStartValue(shown_);
  motion_.setEndValue(isShown ? 1.0 : 0.0);
  motion_.setDuration(motionTime(*this, kClearTime));
  motion_.start();
}

QSize ClearButton::sizeHint() const {
  return {type::scaled(kClearTarget), type::scaled(kClearTarget)};
}

void ClearButton::paint(QPainter& painter) {
  const double size = kSmallest + (1 - kSmallest) * shown_;
  painter.setOpacity(shown_);
  const auto center = QRectF(rect()).center();
  QRectF circle(0, 0, type::scaled(kClearCircle) * size, type::scaled(kClearCircle) * size);
  circle.moveCenter(center);
  auto fill = palette::kSecondaryText;
  fill.setAlphaF(underMouse() ? 0.55F : 0.35F);
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  painter.drawEllipse(circle);
  QRectF cross(0, 0, type::scaled(kClearCross) * size, type::scaled(kClearCross) * size);
  cross.moveCenter(center);
  paintSymbol(painter, cross, QLatin1String("xmark"), Qt::white);
}

WindowButton::WindowButton(QLatin1String symbol, const QString& title, QWidget* parent)
    : PlainButton(title, parent), symbol_(symbol) {
  setToolTip(title);
}

QSize WindowButton::sizeHint() const {
  const int side = type::scaled(kWindowButton);
  return {side, side};
}

void WindowButton::paint(QPainter& painter) {
  const QPointF middle = QRectF(rect()).center();
  const double radius = type::scaled(kWindowCircle) / 2.0;
  painter.setPen(Qt::NoPen);
  painter.setBrush(underMouse() ? palette::kOutline : palette::kChip);
  painter.drawEllipse(middle, radius, radius);
  QRectF box(0, 0, radius, radius);
  box.moveCenter(middle);
  paintSymbol(painter, box, symbol_, isDown() ? palette::kText : palette::kSecondaryText);
}

FilterToggle::FilterToggle(QWidget* parent) : PlainButton(QString(), parent) {
  setFont(type::font(type::kLabel));
  setCount(0);
}

void FilterToggle::setCount(int count) {
  setTitle(count > 0 ? QStringLiteral(u"筛选 (%1) ▾").arg(count) : QStringLiteral(u"筛选 ▾"));
}

QSize FilterToggle::sizeHint() const {
  return {fontMetrics().horizontalAdvance(title()) + 2 * kToggleSides, type::scaled(kToggleHeight)};
}

void FilterToggle::paint(QPainter& painter) {
  painter.setPen(underMouse() ? palette::kText : palette::kSecondaryText);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, title());
}

ChipRow::ChipRow(QWidget* chips, QWidget* parent) : QScrollArea(parent) {
  setFrameShape(NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setWidgetResizable(true);
  setWidget(chips);
  for (auto* chip : chips->findChildren<QWidget*>()) chip->installEventFilter(this);
}

/// What gets the keyboard comes into view.
bool ChipRow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) ensureWidgetVisible(static_cast<QWidget*>(watched));
  return QScrollArea::eventFilter(watched, event);
}

void ChipRow::wheelEvent(QWheelEvent* event) {
  const auto delta = event->angleDelta();
  auto* bar = horizontalScrollBar();
  bar->setValue(bar->value() - (delta.x() != 0 ? delta.x() : delta.y()) / 2);
  event->accept();
}

}  // namespace zelnor::ui
