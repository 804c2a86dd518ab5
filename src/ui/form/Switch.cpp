#include "ui/form/Switch.h"

#include <QPainter>

#include "ui/Palette.h"
#include "ui/Style.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr QSize kTrack(34, 20);
constexpr double kAroundKnob = 2;
constexpr int kMotion = 140;  // ms

QColor between(const QColor& off, const QColor& on, double position) {
  const auto mix = [position](float from, float to) {
    return from + (to - from) * static_cast<float>(position);
  };
  return QColor::fromRgbF(mix(off.redF(), on.redF()), mix(off.greenF(), on.greenF()),
                          mix(off.blueF(), on.blueF()));
}

}  // namespace

Switch::Switch(const QString& title, QWidget* parent) : PlainButton(title, parent) {
  setCheckable(true);
  motion_.setEasingCurve(QEasingCurve::InOutCubic);
  connect(&motion_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    position_ = value.toDouble();
    update();
  });
  connect(this, &QPushButton::toggled, this, [this](bool isOn) {
    const double end = isOn ? 1 : 0;
    motion_.stop();
    motion_.setDuration(isVisible() ? motionTime(*this, kMotion) : 0);
    motion_.setStartValue(position_);
    motion_.setEndValue(end);
    motion_.start();
  });
}

QSize Switch::sizeHint() const {
  return {type::scaled(kTrack.width()), type::scaled(kTrack.height())};
}

void Switch::paint(QPainter& painter) {
  const QRectF track(rect());
  const double radius = track.height() / 2;
  if (!isEnabled()) painter.setOpacity(0.5);
  painter.setPen(Qt::NoPen);
  painter.setBrush(between(palette::kSwitchOff, palette::kGreen, position_));
  painter.drawRoundedRect(track, radius, radius);
  const double knob = radius - kAroundKnob;
  const double x = radius + position_ * (track.width() - 2 * radius);
  painter.setBrush(QColor(0, 0, 0, 28));
  painter.drawEllipse(QPointF(x, radius + 1), knob, knob);
  painter.setBrush(Qt::white);
  painter.drawEllipse(QPointF(x, radius), knob, knob);
}

}  // namespace zelnor::ui
