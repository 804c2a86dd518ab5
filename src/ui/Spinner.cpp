#include "ui/Spinner.h"

#include <chrono>

#include <QPainter>

#include "ui/Palette.h"

namespace zelnor::ui {

namespace {
constexpr int kSize = 14;
constexpr int kPen = 2;
constexpr std::chrono::milliseconds kStep{60};
constexpr int kDegreesPerStep = 24;
constexpr int kFullCircle = 360;
constexpr int kArc = 270;
constexpr int kQtUnitsPerDegree = 16;
}  // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent) {
  setFixedSize(kSize, kSize);
  turn_.setInterval(kStep);
  connect(&turn_, &QTimer::timeout, this, [this] {
    degrees_ = (degrees_ + kDegreesPerStep) % kFullCircle;
    update();
  });
}

void Spinner::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette::kSecondaryText, kPen, Qt::SolidLine, Qt::RoundCap));
  painter.drawArc(rect().adjusted(kPen, kPen, -kPen, -kPen), -degrees_ * kQtUnitsPerDegree,
                  kArc * kQtUnitsPerDegree);
}

void Spinner::showEvent(QShowEvent* /*event*/) { turn_.start(); }
void Spinner::hideEvent(QHideEvent* /*event*/) { turn_.stop(); }

}  // namespace zelnor::ui
