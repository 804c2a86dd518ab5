#pragma once

#include <cstddef>
#include <optional>
#include <variant>
#include <vector>

#include <QAbstractListModel>

#include "bookmarks/BookmarkCategory.h"
#include "bookmarks/SearchBookmark.h"

namespace zelnor {
class BookmarkViewModel;
}

namespace zelnor::ui {

/// Categories and their bookmarks as the rows of one list: each category as a heading above its
/// bookmarks. Headings cannot be selected. Rows keep their identity through every change, so that
/// views stay where they are.
class BookmarksModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  /// The name is the display role, both lines are the tool tip.
  enum Role : int {
    descriptionRole = Qt::UserRole,  ///< QString: what a bookmark searches for
    isHeadingRole,                   ///< bool
    hasMenuRole,                     ///< bool: a heading of a category that can be changed
  };

  /// The bookmarks below one heading.
  struct Section {
    Uuid category;
    int first = 0;  ///< the row of the first of them
    int count = 0;

    [[nodiscard]] int end() const { return first + count; }
  };

  /// The view model outlives the list.
  explicit BookmarksModel(BookmarkViewModel& bookmarks, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

  /// What a row stands for; null where it stands for something else. Valid until the next change.
  [[nodiscard]] const SearchBookmark* bookmarkAt(const QModelIndex& index) const;
  [[nodiscard]] const BookmarkCategory* categoryAt(const QModelIndex& index) const;
  /// The section that `row` belongs to, also as its heading.
  [[nodiscard]] Section sectionOf(int row) const;

  /// Moves the bookmark in `row` before the one in the row `before`, or to the end of its section
  /// if that is where it ends. Other rows change nothing.
  void moveBookmark(int row, int before);

 private:
  struct Identity {
    bool isHeading = false;
    Uuid id;
    int occurrence = 0;  ///< a file edited by hand may hold one twice

    friend bool operator==(const Identity&, const Identity&) = default;
  };
  struct Row {
    Identity identity;
    std::variant<BookmarkCategory, SearchBookmark> content;

    friend bool operator==(const Row&, const Row&) = default;
  };
  using Rows = std::vector<Row>;
  class Places;

  [[nodiscard]] static Rows rowsOf(const BookmarkViewModel& bookmarks);
  void follow();
  void removeOthers(const Places& wanted);
  void reorder(const Places& wanted);
  void insertMissing(const Rows& wanted);
  void replaceContents(Rows wanted);
  template <class T>
  [[nodiscard]] const T* contentAt(const QModelIndex& index) const;
  [[nodiscard]] bool isHeading(int row) const;

  BookmarkViewModel& bookmarks_;
  Rows rows_;
};

}  // namespace zelnor::ui
