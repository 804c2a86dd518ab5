#include "ui/ProgressLine.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include <QPainter>

#include "ui/Palette.h"
#include "ui/Style.h"

namespace zelnor::ui {

namespace {

constexpr int kHeight = 6;
constexpr double kPiece = 0.3;  // of the line
constexpr std::chrono::milliseconds kStep{40};
constexpr int kJourney = 1600;  // ms

}  // namespace

ProgressLine::ProgressLine(QWidget* parent) : QWidget(parent) {
  setFixedHeight(kHeight);
  steps_.setInterval(kStep);
  connect(&steps_, &QTimer::timeout, this, [this] {
    position_ = std::fmod(position_ + static_cast<double>(kStep.count()) / kJourney, 1.0);
    update();
  });
}

void ProgressLine::setProgress(std::optional<double> part) {
  if (part == part_) return;
  part_ = part;
  wander();
  update();
}

/// Only where it is seen; for users who want things to be still, the piece stays in the middle.
void ProgressLine::wander() {
  const bool isMoving = !part_ && isVisible() && motionTime(*this, kJourney) > 0;
  if (isMoving == steps_.isActive()) return;
  if (isMoving) {
    steps_.start();
  } else {
    steps_.stop();
  }
}

void ProgressLine::showEvent(QShowEvent* /*event*/) { wander(); }
void ProgressLine::hideEvent(QHideEvent* /*event*/) { steps_.stop(); }

void ProgressLine::paintEvent(QPaintEvent* /*event*/) {
  constexpr double kRadius = kHeight / 2.0;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette::kChip);
  painter.drawRoundedRect(rect(), kRadius, kRadius);
  QRectF filled(rect());
  if (!part_) {
    const double position = steps_.isActive() ? position_ : 1.0 / 2;
    filled.setWidth(width() * kPiece);
    filled.moveLeft(position * (width() + filled.width()) - filled.width());
    filled = filled.intersected(rect());
  } else if (*part_ > 0) {
    filled.setWidth(std::max<double>(width() * *part_, kHeight));
  } else {
    return;
  }
  painter.setBrush(palette::kAccent);
  painter.drawRoundedRect(filled, kRadius, kRadius);
}

}  // namespace zelnor::ui
