#pragma once

#include <QListView>
#include <QPersistentModelIndex>

#include "bookmarks/BookmarkCategory.h"
#include "bookmarks/SearchBookmark.h"

namespace zelnor {
class BookmarkViewModel;
}

namespace zelnor::ui {

class BookmarkDelegate;
class BookmarkDrag;
class BookmarksModel;

/// All bookmarks under the headings of their categories. A click applies one, also Return and
/// Space; menus and Delete change the lists; rows are dragged within their section, also with Alt
/// and an arrow key.
class BookmarksList final : public QListView {
  Q_OBJECT

 public:
  /// The view model outlives the list.
  explicit BookmarksList(BookmarkViewModel& bookmarks, QWidget* parent = nullptr);

  /// Beside open filters, a low window leaves little room.
  [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }

 Q_SIGNALS:
  void chosen(const zelnor::SearchBookmark& bookmark);
  /// The user wants to give a category another name.
  void renameRequested(const zelnor::Uuid& category);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
  bool viewportEvent(QEvent* event) override;

 private:
  [[nodiscard]] QModelIndex firstBookmark() const;
  [[nodiscard]] bool isAtButton(const QModelIndex& index, const QPoint& at) const;
  void showPointer(const QPoint& at);
  void choose(const QModelIndex& index);
  void remove(const QModelIndex& index);
  void moveCurrent(int distance);
  void openMenu(const QModelIndex& index, const QPoint& at);
  void openMenuBelow(const QModelIndex& index);

  BookmarkViewModel& bookmarks_;
  BookmarksModel* model_;
  BookmarkDelegate* delegate_;
  BookmarkDrag* drag_;
  QPersistentModelIndex pressed_;
};

}  // namespace zelnor::ui
