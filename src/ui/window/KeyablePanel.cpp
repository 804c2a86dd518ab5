#include "ui/window/KeyablePanel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWindow>

#include "ui/Palette.h"
#include "ui/window/CornerCut.h"
#include "ui/window/ResizeGrip.h"

namespace zelnor::ui {

namespace {

/// What a grip takes from the surface.
constexpr int kGripInside = 4;
/// Focus goes astray for a moment when a menu opens or the keyboard layout is switched.
constexpr int kFocusSettlesAfter = 250;  // ms

/// Whether `window` belongs to `panel`: shown over it and because of it.
bool isOwnedBy(const QWindow* window, const QWindow* panel) {
  for (; window != nullptr; window = window->transientParent()) {
    if (window == panel) return true;
  }
  return false;
}

}  // namespace

KeyablePanel::KeyablePanel(QWidget* content)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      content_(content),
      corners_{new CornerCut(Qt::TopLeftCorner, shadow_, this),
               new CornerCut(Qt::TopRightCorner, shadow_, this),
               new CornerCut(Qt::BottomLeftCorner, shadow_, this),
               new CornerCut(Qt::BottomRightCorner, shadow_, this)},
      grips_{new ResizeGrip(Qt::TopEdge, this),
             new ResizeGrip(Qt::BottomEdge, this),
             new ResizeGrip(Qt::LeftEdge, this),
             new ResizeGrip(Qt::RightEdge, this),
             new ResizeGrip(Qt::TopEdge | Qt::LeftEdge, this),
             new ResizeGrip(Qt::TopEdge | Qt::RightEdge, this),
             new ResizeGrip(Qt::BottomEdge | Qt::LeftEdge, this),
             new ResizeGrip(Qt::BottomEdge | Qt::RightEdge, this)} {
  setAttribute(Qt::WA_TranslucentBackground);
  setWindowTitle(content->windowTitle());
  content_->setParent(this);
  content_->setAutoFillBackground(true);
  content_->lower();
  setMinimumSize(content_->minimumSize());
  resize(content_->size());
}

KeyablePanel::~KeyablePanel() = default;

void KeyablePanel::setComposited(bool isComposited) {
  const int margin = isComposited ? WindowShadow::kReach : 0;
  if (margin == margin_) return;
  const QRect kept = frame();
  margin_ = margin;
  const QSize around(2 * margin_, 2 * margin_);
  setMinimumSize(content_->minimumSize() + around);
  setFrame(kept);
  place();
  update();
}

QRect KeyablePanel::surface() const {
  return rect().adjusted(margin_, margin_, -margin_, -margin_);
}

QRect KeyablePanel::frame() const {
  return geometry().adjusted(margin_, margin_, -margin_, -margin_);
}

void KeyablePanel::setFrame(const QRect& frame) {
  setGeometry(frame.adjusted(-margin_, -margin_, margin_, margin_));
}

void KeyablePanel::place() {
  const QRect box = surface();
  // Without a shadow, a line sets it off from what lies below.
  const int line = margin_ > 0 ? 0 : 1;
  content_->setGeometry(box.adjusted(line, line, -line, -line));
  for (auto* corner : corners_) {
    corner->setVisible(margin_ > 0);
    corner->placeOn(box, kRadius);
  }
  for (auto* grip : grips_) grip->placeAround(box, kGripInside, margin_ > 0 ? kGrip : 0);
  Q_EMIT shadowChanged();
}

void KeyablePanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  place();
}

void KeyablePanel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (margin_ > 0) {
    shadow_.paint(painter, surface(), kRadius);
  } else {
    painter.fillRect(rect(), palette::kOutline);
  }
}

void KeyablePanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::ActivationChange) return;
  if (isActiveWindow()) {
    hasBeenKey_ = true;
  } else {
    QTimer::singleShot(kFocusSettlesAfter, this, &KeyablePanel::resignUnlessOwn);
  }
}

void KeyablePanel::resignUnlessOwn() {
  const bool isStillOwn = isOwnedBy(QGuiApplication::focusWindow(), windowHandle()) ||
                          QApplication::activePopupWidget() != nullptr;
  const bool isLost = isVisible() && !isActiveWindow() && !isStillOwn;
  // One that is just coming has nothing to lose yet.
  if (isLost && hasBeenKey_) Q_EMIT keyResigned();
}

void KeyablePanel::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  hasBeenKey_ = false;
}

void KeyablePanel::closeEvent(QCloseEvent* event) {
  event->ignore();
  Q_EMIT closeRequested();
}

/// What reaches the panel is a press on its background: whatever can be pressed has taken its own.
void KeyablePanel::mousePressEvent(QMouseEvent* event) {
  const bool isOnSurface = surface().contains(event->pos());
  pressedAt_ =
      event->button() == Qt::LeftButton && isOnSurface ? std::optional(event->pos()) : std::nullopt;
}

void KeyablePanel::mouseMoveEvent(QMouseEvent* event) {
  const bool isPulled = pressedAt_ && (event->pos() - *pressedAt_).manhattanLength() >=
                                          QApplication::startDragDistance();
  if (!isPulled) return;
  // Asked twice, a window manager begins anew after the button was let go.
  pressedAt_.reset();
  windowHandle()->startSystemMove();
}

}  // namespace zelnor::ui
