#pragma once

#include "ui/Sheet.h"

class QComboBox;
class QLineEdit;

namespace zelnor {
class BookmarkViewModel;
}

namespace zelnor::ui {

class ElidedLabel;

/// Saves the search captured last as a bookmark.
class AddBookmarkSheet final : public Sheet {
  Q_OBJECT

 public:
  /// The view model outlives the sheet.
  AddBookmarkSheet(BookmarkViewModel& bookmarks, QWidget& panel);

 private:
  QWidget* makeForm();
  void listCategories();
  void showQuery();
  void save();

  BookmarkViewModel& bookmarks_;
  QLineEdit* name_;
  QComboBox* category_;
  ElidedLabel* query_;
};

}  // namespace zelnor::ui
