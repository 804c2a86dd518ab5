#include "bookmarks/BookmarkLists.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>
#include <utility>

namespace zelnor {

namespace {

template <class Record>
std::int64_t nextSortOrder(const std::vector<Record>& records) {
  return static_cast<std::int64_t>(records.size());
}

/// The positions 0 to `count` - 1 in their order after the move.
std::vector<std::size_t> orderAfterMove(std::size_t count, const BookmarkLists::Positions& from,
                                        std::size_t to) {
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto moves = [&from](std::size_t position) { return from.contains(position); };
  const auto destination = order.begin() + static_cast<std::ptrdiff_t>(std::min(to, count));
  std::stable_partition(order.begin(), destination, std::not_fn(moves));
  std::stable_partition(destination, order.end(), moves);
  return order;
}

}  // namespace

std::vector<SearchBookmark> BookmarkLists::bookmarksIn(
    const std::optional<Uuid>& categoryID) const {
  std::vector<SearchBookmark> shown;
  std::ranges::copy_if(bookmarks, std::back_inserter(shown), [&](const SearchBookmark& bookmark) {
    return !categoryID || bookmark.categoryID == *categoryID;
  });
  std::ranges::stable_sort(shown, {}, &SearchBookmark::sortOrder);
  return shown;
}

void BookmarkLists::addBookmark(SearchBookmark bookmark) {
  bookmark.sortOrder = nextSortOrder(bookmarks);
  bookmarks.push_back(std::move(bookmark));
}

void BookmarkLists::deleteBookmark(const Uuid& id) {
  std::erase_if(bookmarks, [&](const SearchBookmark& bookmark) { return bookmark.id == id; });
}

void BookmarkLists::moveBookmarks(const Positions& from, std::size_t to) {
  std::vector<SearchBookmark> moved;
  for (const auto position : orderAfterMove(bookmarks.size(), from, to)) {
    moved.push_back(std::move(bookmarks[position]));
    moved.back().sortOrder = static_cast<std::int64_t>(moved.size()) - 1;
  }
  bookmarks = std::move(moved);
}

bool BookmarkLists::moveBookmarks(const Uuid& categoryID, const Positions& from, std::size_t to) {
  // Stored and shown order differ where bookmarks were deleted and others added since.
  auto shown = bookmarksIn(std::nullopt);
  std::vector<std::size_t> section;  // where the category's bookmarks are among all
  for (std::size_t position = 0; position < shown.size(); ++position) {
    if (shown[position].categoryID == categoryID) section.push_back(position);
  }
  Positions fromAll;
  for (const auto position : from) {
    if (position < section.size()) fromAll.insert(section[position]);
  }
  if (fromAll.empty()) return false;
  bookmarks = std::move(shown);
  moveBookmarks(fromAll, to < section.size() ? section[to] : section.back() + 1);
  return true;
}

void BookmarkLists::addCategory(std::string name) {
  categories.push_back({Uuid::random(), std::move(name), nextSortOrder(categories)});
}

bool BookmarkLists::renameCategory(const Uuid& id, std::string name) {
  const auto found = std::ranges::find(categories, id, &BookmarkCategory::id);
  if (found == categories.end()) return false;
  found->name = std::move(name);
  return true;
}

bool BookmarkLists::deleteCategory(const Uuid& id) {
  if (id == BookmarkCategory::uncategorized.id) return false;
  for (auto& bookmark : bookmarks) {
    if (bookmark.categoryID == id) bookmark.categoryID = BookmarkCategory::uncategorized.id;
  }
  std::erase_if(categories, [&](const BookmarkCategory& category) { return category.id == id; });
  return true;
}

}  // namespace zelnor
