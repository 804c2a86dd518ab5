#pragma once

#include <optional>

#include <QWidget>

#include "bookmarks/Uuid.h"

class QListWidget;

namespace zelnor {
class BookmarkViewModel;
}

namespace zelnor::ui {

class SymbolButton;

/// The bookmarks page of the settings: categories on the left, on the right the bookmarks of the
/// selected one, or all of them. Main thread only.
class BookmarkSettingsView final : public QWidget {
  Q_OBJECT

 public:
  /// Sheets lie over `window`. The view model outlives the view.
  BookmarkSettingsView(BookmarkViewModel& bookmarks, QWidget& window, QWidget* parent = nullptr);

 private:
  [[nodiscard]] QWidget* makeCategoryPane();
  [[nodiscard]] QWidget* makeBookmarkPane();
  void showCategories();
  void showBookmarks();
  void chooseCategory();
  void chooseBookmark();
  void deleteBookmark(const Uuid& id);
  void openMenu(const QPoint& place);
  void askForCategory();

  BookmarkViewModel& bookmarkVM_;
  QWidget& window_;
  QListWidget* categories_;
  QListWidget* bookmarks_;
  SymbolButton* trash_ = nullptr;
  std::optional<Uuid> selectedBookmark_;
  bool isShowing_ = false;  ///< the lists are being filled; nobody has chosen anything
};

}  // namespace zelnor::ui
