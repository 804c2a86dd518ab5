#pragma once

#include <optional>

#include <QBasicTimer>
#include <QObject>
#include <QPersistentModelIndex>
#include <QPoint>

class QListView;
class QPainter;

namespace zelnor::ui {

class BookmarksModel;

/// A bookmark being dragged within its section by the mouse.
///
/// The list moves it itself: a drag of the window system's would take the keyboard from the window
/// and could end anywhere. Points are those of the list's viewport.
class BookmarkDrag final : public QObject {
  Q_OBJECT

 public:
  /// Both outlive the drag.
  BookmarkDrag(QListView& list, BookmarksModel& model);

  /// The mouse was pressed on `row`: it may become a drag.
  void press(const QModelIndex& row, const QPoint& at);
  void move(const QPoint& at);
  /// Ends the drag: the bookmark goes where the line is, if there is one. Answers whether there
  /// was a drag.
  bool release(const QPoint& at);
  /// Also by Escape, wherever the keyboard is.
  void cancel();

  [[nodiscard]] bool isUnderWay() const { return isUnderWay_ && row_.isValid(); }
  [[nodiscard]] QModelIndex row() const { return isUnderWay_ ? QModelIndex(row_) : QModelIndex(); }
  /// The row before which the bookmark would go; nothing where it cannot be dropped.
  [[nodiscard]] std::optional<int> target() const;
  /// Draws the line at the target.
  void paint(QPainter& painter) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void begin();
  /// How far the list has to go on because the pointer is at one of its edges.
  [[nodiscard]] int scrollStep() const;

  QListView& list_;
  BookmarksModel& model_;
  QPersistentModelIndex row_;
  QPoint pressedAt_;
  QPoint at_;
  bool isUnderWay_ = false;
  QBasicTimer scrolling_;
};

}  // namespace zelnor::ui
