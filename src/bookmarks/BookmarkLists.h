#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

#include "bookmarks/BookmarkCategory.h"
#include "bookmarks/SearchBookmark.h"

namespace zelnor {

/// All bookmarks and categories, and every change that can be made to them. Both lists are in
/// stored order; categories are shown in that order too.
struct BookmarkLists {
  using Positions = std::set<std::size_t>;

  std::vector<SearchBookmark> bookmarks;
  std::vector<BookmarkCategory> categories;

  /// The bookmarks of a category, or all of them, as they are shown: by `sortOrder`, equal ones in
  /// stored order.
  [[nodiscard]] std::vector<SearchBookmark> bookmarksIn(
      const std::optional<Uuid>& categoryID) const;

  /// Appends `bookmark`; its `sortOrder` becomes the number of bookmarks before it.
  void addBookmark(SearchBookmark bookmark);
  void deleteBookmark(const Uuid& id);
  /// Moves the bookmarks at the positions `from`, in their order, before the one at `to`, or to the
  /// end, and renumbers all by position. Positions count in stored order; those beyond the end of
  /// the list mean nothing in `from`, and its end in `to`.
  void moveBookmarks(const Positions& from, std::size_t to);
  /// The same with positions within `bookmarksIn(categoryID)`. What is shown of other categories
  /// keeps its order. Answers whether `from` names a bookmark; nothing changes otherwise.
  bool moveBookmarks(const Uuid& categoryID, const Positions& from, std::size_t to);

  /// Appends a new category.
  void addCategory(std::string name);
  /// Answers whether there is such a category.
  bool renameCategory(const Uuid& id, std::string name);
  /// Removes a category and leaves its bookmarks uncategorized. Answers false, and does nothing,
  /// for the uncategorized category.
  bool deleteCategory(const Uuid& id);

  friend bool operator==(const BookmarkLists&, const BookmarkLists&) = default;
};

}  // namespace zelnor
