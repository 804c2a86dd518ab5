#include "ui/SlidingPane.h"

#include <cmath>

#include <QEvent>
#include <QPainter>

#include "ui/Style.h"

namespace zelnor::ui {

namespace {
constexpr int kSlideTime = 180;  // ms
}

SlidingPane::SlidingPane(QWidget* content, Edge edge, QWidget* parent)
    : QWidget(parent), content_(content), edge_(edge) {
  content->setParent(this);
  content->hide();
  setSizePolicy(edge == Edge::top ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                edge == Edge::top ? QSizePolicy::Fixed : QSizePolicy::Expanding);
  hide();
  motion_.setEasingCurve(QEasingCurve::InOutSine);
  connect(&motion_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    shown_ = value.toDouble();
    updateGeometry();
    update();
  });
  connect(&motion_, &QVariantAnimation::finished, this, &SlidingPane::end);
}

void SlidingPane::setOpen(bool isOpen) {
  if (isOpen == isOpen_) return;
  isOpen_ = isOpen;
  begin();
  motion_.stop();
  motion_.setStartValue(shown_);
  motion_.setEndValue(isOpen ? 1.0 : 0.0);
  motion_.setDuration(motionTime(*this, kSlideTime));
  motion_.start();
}

/// A picture moves and fades without being laid out and drawn anew for every step.
void SlidingPane::begin() {
  if (picture_.isNull()) {
    content_->resize(contentSize());
    picture_ = content_->grab();
  }
  content_->hide();
  show();
}

void SlidingPane::end() {
  picture_ = {};
  content_->setVisible(isOpen_);
  setVisible(isOpen_);
  placeContent();
  updateGeometry();
}

QSize SlidingPane::contentSize() const {
  const auto wanted = content_->sizeHint();
  return edge_ == Edge::top ? QSize(parentWidget()->width(), wanted.height())
                            : QSize(wanted.width(), std::max(height(), 1));
}

QSize SlidingPane::sizeHint() const {
  auto size = content_->sizeHint();
  auto& length = edge_ == Edge::top ? size.rheight() : size.rwidth();
  length = static_cast<int>(std::lround(length * shown_));
  return size;
}

QSize SlidingPane::minimumSizeHint() const {
  const auto wanted = sizeHint();
  const auto least = content_->minimumSizeHint();
  return edge_ == Edge::top ? QSize(least.width(), wanted.height())
                            : QSize(wanted.width(), least.height());
}

bool SlidingPane::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) updateGeometry();
  return QWidget::event(event);
}

void SlidingPane::paintEvent(QPaintEvent* /*event*/) {
  if (picture_.isNull()) return;
  QPainter painter(this);
  painter.setOpacity(shown_);
  const auto size = picture_.deviceIndependentSize();
  painter.drawPixmap(edge_ == Edge::top ? QPointF(0, height() - size.height())
                                        : QPointF(width() - size.width(), 0),
                     picture_);
}

void SlidingPane::resizeEvent(QResizeEvent* /*event*/) { placeContent(); }

void SlidingPane::placeContent() {
  if (picture_.isNull()) content_->setGeometry(rect());
}

}  // namespace zelnor::ui
