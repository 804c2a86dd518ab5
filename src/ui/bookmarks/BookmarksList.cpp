#include "ui/bookmarks/BookmarksList.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "bookmarks/BookmarkViewModel.h"
#include "ui/Menu.h"
#include "ui/Palette.h"
#include "ui/bookmarks/BookmarkDelegate.h"
#include "ui/bookmarks/BookmarkDrag.h"
#include "ui/bookmarks/BookmarkRowGeometry.h"
#include "ui/bookmarks/BookmarksModel.h"

namespace zelnor::ui {

BookmarksList::BookmarksList(BookmarkViewModel& bookmarks, QWidget* parent)
    : QListView(parent),
      bookmarks_(bookmarks),
      model_(new BookmarksModel(bookmarks, this)),
      delegate_(new BookmarkDelegate(this)),
      drag_(new BookmarkDrag(*this, *model_)) {
  setModel(model_);
  setItemDelegate(delegate_);
  setAccessibleName(QStringLiteral(u"书签"));
  setSelectionMode(NoSelection);
  setEditTriggers(NoEditTriggers);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(NoFrame);
  // A click leaves the keyboard in the search field.
  setFocusPolicy(Qt::TabFocus);
  setMouseTracking(true);
  viewport()->setAttribute(Qt::WA_Hover);
  viewport()->setAutoFillBackground(false);
}

void BookmarksList::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (drag_->isUnderWay()) return;
  if (event->reason() == QContextMenuEvent::Mouse) {
    openMenu(indexAt(event->pos()), event->globalPos());
  } else {
    openMenuBelow(currentIndex());
  }
}

/// The keyboard begins at a bookmark, not at the heading above it.
void BookmarksList::focusInEvent(QFocusEvent* event) {
  const bool isTab =
      event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  const bool hasBookmark = model_->bookmarkAt(currentIndex()) != nullptr;
  if (isTab && !hasBookmark) setCurrentIndex(firstBookmark());
  QListView::focusInEvent(event);
}

void BookmarksList::hideEvent(QHideEvent* event) {
  drag_->cancel();
  QListView::hideEvent(event);
}

void BookmarksList::keyPressEvent(QKeyEvent* event) {
  const bool isMove = event->modifiers().testFlag(Qt::AltModifier);
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (model_->categoryAt(currentIndex()) != nullptr) return openMenuBelow(currentIndex());
      return choose(currentIndex());
    case Qt::Key_Delete:
      return remove(currentIndex());
    case Qt::Key_Up:
      if (isMove) return moveCurrent(-1);
      break;
    case Qt::Key_Down:
      if (isMove) return moveCurrent(+1);
      break;
    default:
      break;
  }
  QListView::keyPressEvent(event);
}

/// The second click of two is none of its own.
void BookmarksList::mouseDoubleClickEvent(QMouseEvent* event) { event->accept(); }

void BookmarksList::mousePressEvent(QMouseEvent* event) {
  const auto at = event->position().toPoint();
  if (event->button() != Qt::LeftButton) return drag_->cancel();
  pressed_ = indexAt(at);
  if (model_->bookmarkAt(pressed_) != nullptr) drag_->press(pressed_, at);
}

void BookmarksList::mouseMoveEvent(QMouseEvent* event) {
  const auto at = event->position().toPoint();
  if (event->buttons().testFlag(Qt::LeftButton)) drag_->move(at);
  showPointer(at);
}

void BookmarksList::mouseReleaseEvent(QMouseEvent* event) {
  const auto at = event->position().toPoint();
  if (event->button() != Qt::LeftButton) return;
  const QPersistentModelIndex pressed = std::exchange(pressed_, QModelIndex());
  const bool wasDrag = drag_->release(at);
  showPointer(at);
  if (wasDrag || !pressed.isValid() || indexAt(at) != pressed) return;
  if (isAtButton(pressed, at)) {
    openMenuBelow(pressed);
  } else {
    choose(pressed);
  }
}

void BookmarksList::paintEvent(QPaintEvent* event) {
  delegate_->setDragged(drag_->row());
  QListView::paintEvent(event);
  QPainter painter(viewport());
  drag_->paint(painter);
}

bool BookmarksList::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::Leave) delegate_->setHoveredButton({});
  return QListView::viewportEvent(event);
}

/// The keyboard stays in the section as long as there is a bookmark in it.
void BookmarksList::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
  const int current = currentIndex().row();
  if (current >= start && current <= end) {
    const auto next = model_->index(end + 1);
    setAutoScroll(false);
    setCurrentIndex(model_->bookmarkAt(next) != nullptr ? next : model_->index(start - 1));
    setAutoScroll(true);
  }
  QListView::rowsAboutToBeRemoved(parent, start, end);
}

QModelIndex BookmarksList::firstBookmark() const {
  for (int row = 0; row < model_->rowCount(); ++row) {
    const auto index = model_->index(row);
    if (model_->bookmarkAt(index) != nullptr) return index;
  }
  return {};
}

bool BookmarksList::isAtButton(const QModelIndex& index, const QPoint& at) const {
  const bool hasMenu = index.data(BookmarksModel::hasMenuRole).toBool();
  return hasMenu && BookmarkRowGeometry::ofHeading(visualRect(index), hasMenu).button.contains(at);
}

/// What the pointer is over, in its shape and under it.
void BookmarksList::showPointer(const QPoint& at) {
  const auto index = indexAt(at);
  const bool isButton = isAtButton(index, at);
  delegate_->setHoveredButton(isButton ? index : QModelIndex());
  auto shape = Qt::ArrowCursor;
  if (drag_->isUnderWay()) {
    shape = drag_->target() ? Qt::ClosedHandCursor : Qt::ForbiddenCursor;
  } else if (isButton || model_->bookmarkAt(index) != nullptr) {
    shape = Qt::PointingHandCursor;
  }
  viewport()->setCursor(shape);
  viewport()->update();
}

void BookmarksList::choose(const QModelIndex& index) {
  const auto* bookmark = model_->bookmarkAt(index);
  if (bookmark == nullptr) return;
  const auto copy = *bookmark;  // the list may change meanwhile
  Q_EMIT chosen(copy);
}

void BookmarksList::remove(const QModelIndex& index) {
  const auto* bookmark = model_->bookmarkAt(index);
  if (bookmark != nullptr) bookmarks_.deleteBookmark(Uuid(bookmark->id));
}

void BookmarksList::moveCurrent(int distance) {
  const int row = currentIndex().row();
  if (model_->bookmarkAt(currentIndex()) == nullptr) return;
  model_->moveBookmark(row, distance < 0 ? row - 1 : row + 2);
  scrollTo(currentIndex());
}

/// Entries know what they are for by its identity: rows may change while the menu is open.
void BookmarksList::openMenu(const QModelIndex& index, const QPoint& at) {
  const auto* bookmark = model_->bookmarkAt(index);
  const auto* category = model_->categoryAt(index);
  const bool hasMenu = index.data(BookmarksModel::hasMenuRole).toBool();
  if (bookmark == nullptr && !hasMenu) return;
  auto* menu = new Menu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  if (bookmark != nullptr) {
    menu->addDestructive(QLatin1String("trash"), QStringLiteral(u"删除"),
                         [this, id = bookmark->id] { bookmarks_.deleteBookmark(id); });
  } else {
    menu->add(QLatin1String("pencil"), QStringLiteral(u"重命名"),
              [this, id = category->id] { Q_EMIT renameRequested(id); });
    menu->addDestructive(QLatin1String("trash"), QStringLiteral(u"删除分类"),
                         [this, id = category->id] { bookmarks_.deleteCategory(id); });
  }
  menu->popup(at);
}

void BookmarksList::openMenuBelow(const QModelIndex& index) {
  if (!index.isValid()) return;
  scrollTo(index);
  const auto row = visualRect(index);
  const auto parts = BookmarkRowGeometry::ofHeading(row, /*hasMenu=*/true);
  const bool isHeading = model_->categoryAt(index) != nullptr;
  const auto corner = isHeading ? parts.button.bottomLeft() : row.center();
  openMenu(index, viewport()->mapToGlobal(corner));
}

}  // namespace zelnor::ui
