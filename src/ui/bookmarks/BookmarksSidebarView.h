#pragma once

#include <QPointer>
#include <QWidget>

#include "bookmarks/SearchBookmark.h"

namespace zelnor {
class BookmarkViewModel;
}

namespace zelnor::ui {

class BookmarksList;
class Sheet;

/// The column of bookmarks beside the results.
class BookmarksSidebarView final : public QWidget {
  Q_OBJECT

 public:
  /// The sheets lie over all of `panel`. The view model outlives the view.
  BookmarksSidebarView(BookmarkViewModel& bookmarks, QWidget& panel, QWidget* parent);

  /// Asks for the name and the category of a bookmark of the search captured last. Does nothing
  /// while it asks already.
  void openAddSheet();

  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  /// The user wants the search of this bookmark.
  void chosen(const zelnor::SearchBookmark& bookmark);
  /// The user wants to save a bookmark; `openAddSheet` goes on with it.
  void newRequested();

 private:
  QWidget* makeHeader();
  QWidget* makeFooter();
  void addCategory();
  void openRenameSheet(const Uuid& id);
  void open(Sheet* sheet);

  BookmarkViewModel& bookmarks_;
  QWidget& panel_;
  QWidget* header_;  // before the list also for the Tab key
  BookmarksList* list_;
  QPointer<Sheet> sheet_;
};

}  // namespace zelnor::ui
