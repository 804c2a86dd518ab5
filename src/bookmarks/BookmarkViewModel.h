#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QObject>

#include "bookmarks/BookmarkLists.h"
#include "search/SearchFilter.h"

namespace zelnor {

struct BookmarkServices;
class SearchViewModel;

/// The one owner of bookmarks and categories while the program runs. Every change is stored.
///
/// Main thread only. Changes are signalled there, once all values that change together have
/// changed. Texts are UTF-8 and kept as given, not trimmed. No operation fails: what cannot be read
/// or written leaves the lists as they are.
class BookmarkViewModel final : public QObject {
  Q_OBJECT

 public:
  using Positions = BookmarkLists::Positions;

  /// Starts to load what is stored. Until that is there both lists are empty; whatever is asked for
  /// meanwhile happens then.
  explicit BookmarkViewModel(const BookmarkServices& services, QObject* parent = nullptr);
  ~BookmarkViewModel() override;

  /// In stored order. Valid until the next change, like the categories.
  [[nodiscard]] const std::vector<SearchBookmark>& bookmarks() const { return lists_.bookmarks; }
  /// In the order in which they are shown.
  [[nodiscard]] const std::vector<BookmarkCategory>& categories() const {
    return lists_.categories;
  }
  /// The bookmarks of one category, or all of them, in the order in which they are shown.
  [[nodiscard]] std::vector<SearchBookmark> bookmarksIn(
      const std::optional<Uuid>& categoryID) const {
    return lists_.bookmarksIn(categoryID);
  }

  /// The category selected in the settings; it stays when that category is deleted.
  [[nodiscard]] const std::optional<Uuid>& selectedCategoryID() const {
    return selectedCategoryID_;
  }
  void setSelectedCategoryID(const std::optional<Uuid>& id);

  /// What a new bookmark is going to search for.
  [[nodiscard]] const std::string& pendingBookmarkQuery() const { return pendingBookmarkQuery_; }
  [[nodiscard]] const SearchFilter& pendingBookmarkFilter() const { return pendingBookmarkFilter_; }
  /// Captures the query and the filter of `search` as pending.
  void prepareNew(const SearchViewModel& search);

  /// Appends a bookmark. Without a name it goes by its query, without that by "新书签".
  void addBookmark(const std::string& name, const std::string& query, const SearchFilter& filter,
                   const Uuid& categoryID);
  void deleteBookmark(const Uuid& id);
  /// Moves rows of the list of all bookmarks, in their order, before the row at `to`, or to the end
  /// if that is the length of the list.
  void moveBookmarks(const Positions& from, std::size_t to);
  /// The same for rows of `bookmarksIn(categoryID)`; other categories keep their order.
  void moveBookmarksInCategory(const Uuid& categoryID, const Positions& from, std::size_t to);

  /// Appends a category. Names may be empty, and the same.
  void addCategory(const std::string& name);
  void renameCategory(const Uuid& id, const std::string& name);
  /// Removes a category, but never the uncategorized one, which is where its bookmarks go.
  void deleteCategory(const Uuid& id);

  /// Calls `stopped` (main thread) when every change so far has been stored; the view model must
  /// live until then.
  void stop(std::function<void()> stopped);

 Q_SIGNALS:
  void bookmarksChanged();
  void categoriesChanged();
  void selectedCategoryIDChanged();
  void pendingBookmarkQueryChanged();
  void pendingBookmarkFilterChanged();

 private:
  class Tasks;
  /// Answers whether the lists are to be stored; if not, they are as they were.
  using Edit = std::function<bool(BookmarkLists&)>;

  void loaded(BookmarkLists lists);
  void apply(const Edit& edit);
  void show(BookmarkLists lists);

  BookmarkLists lists_;
  std::optional<Uuid> selectedCategoryID_;
  std::string pendingBookmarkQuery_;
  SearchFilter pendingBookmarkFilter_;
  bool isLoaded_ = false;
  std::vector<Edit> untilLoaded_;  ///< edits that wait for the lists
  std::unique_ptr<Tasks> tasks_;
};

}  // namespace zelnor
