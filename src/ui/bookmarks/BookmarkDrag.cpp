#include "ui/bookmarks/BookmarkDrag.h"

#include <algorithm>

#include <QApplication>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QScrollBar>
#include <QTimerEvent>

#include "ui/Palette.h"
#include "ui/bookmarks/BookmarksModel.h"

namespace zelnor::ui {

namespace {

constexpr int kScrollInterval = 16;  // ms
constexpr int kScrollEdge = 20;
constexpr int kLargestStep = 12;
constexpr int kTolerance = 12;  // above the first and below the last row of the section
constexpr int kLineMargin = 8;
constexpr double kKnob = 2.5;
constexpr double kLine = 2;

}  // namespace

BookmarkDrag::BookmarkDrag(QListView& list, BookmarksModel& model)
    : QObject(&list), list_(list), model_(model) {}

void BookmarkDrag::press(const QModelIndex& row, const QPoint& at) {
  cancel();
  row_ = row;
  pressedAt_ = at;
}

void BookmarkDrag::move(const QPoint& at) {
  at_ = at;
  if (!row_.isValid()) return;
  const int distance = (at - pressedAt_).manhattanLength();
  if (!isUnderWay_ && distance >= QApplication::startDragDistance()) begin();
  list_.viewport()->update();
}

void BookmarkDrag::begin() {
  isUnderWay_ = true;
  scrolling_.start(kScrollInterval, this);
  QCoreApplication::instance()->installEventFilter(this);
}

bool BookmarkDrag::release(const QPoint& at) {
  at_ = at;
  const bool wasUnderWay = isUnderWay_;
  const int row = row_.row();
  const auto before = target();
  cancel();
  if (before) model_.moveBookmark(row, *before);
  return wasUnderWay;
}

void BookmarkDrag::cancel() {
  row_ = QModelIndex();
  isUnderWay_ = false;
  scrolling_.stop();
  QCoreApplication::instance()->removeEventFilter(this);
  list_.viewport()->update();
}

std::optional<int> BookmarkDrag::target() const {
  if (!isUnderWay() || !list_.viewport()->rect().contains(at_)) return {};
  const auto section = model_.sectionOf(row_.row());
  const auto place = [this](int row) { return list_.visualRect(model_.index(row)); };
  const int top = place(section.first).top() - kTolerance;
  const int bottom = place(section.end() - 1).bottom() + kTolerance;
  if (at_.y() < top || at_.y() > bottom) return {};
  int before = section.first;
  while (before < section.end() && place(before).center().y() < at_.y()) ++before;
  return before;
}

void BookmarkDrag::paint(QPainter& painter) const {
  const auto before = target();
  if (!before) return;
  const auto above = list_.visualRect(model_.index(*before - 1));
  const double y = above.bottom() + 1;
  const double left = kLineMargin + kKnob;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette::kAccent, kLine));
  painter.drawLine(QPointF(left + kKnob, y), QPointF(above.right() + 1 - kLineMargin, y));
  painter.setBrush(palette::kPanel);
  painter.drawEllipse(QPointF(left, y), kKnob, kKnob);
  painter.restore();
}

bool BookmarkDrag::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  if (type != QEvent::KeyPress && type != QEvent::ShortcutOverride) {
    return QObject::eventFilter(watched, event);
  }
  if (static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) return false;
  event->accept();  // and is no shortcut
  if (type == QEvent::KeyPress) cancel();
  return true;
}

void BookmarkDrag::timerEvent(QTimerEvent* /*event*/) {
  if (!isUnderWay()) return cancel();
  const int step = scrollStep();
  if (step == 0) return;
  auto* const bar = list_.verticalScrollBar();
  bar->setValue(bar->value() + step);
  list_.viewport()->update();
}

int BookmarkDrag::scrollStep() const {
  const int above = kScrollEdge - at_.y();
  const int below = at_.y() - (list_.viewport()->height() - kScrollEdge);
  if (above > 0) return -std::min(above / 2 + 1, kLargestStep);
  return below > 0 ? std::min(below / 2 + 1, kLargestStep) : 0;
}

}  // namespace zelnor::ui
