#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "bookmarks/Uuid.h"
#include "search/Date.h"
#include "search/Hash.h"
#include "search/SearchFilter.h"

namespace zelnor {

/// A saved search. Texts are UTF-8.
struct SearchBookmark {
  Uuid id;
  std::string name;
  std::string query;  ///< as typed, not trimmed
  SearchFilter filter;
  Uuid categoryID;  ///< may name a category that no longer exists
  Date createdAt;
  std::int64_t sortOrder = 0;  ///< smaller comes first; neither unique nor without gaps

  /// What it searches for, in one line for the user.
  [[nodiscard]] std::string displayDescription() const;

  friend bool operator==(const SearchBookmark&, const SearchBookmark&) = default;
};

}  // namespace zelnor

template <>
struct std::hash<zelnor::SearchBookmark> {
  std::size_t operator()(const zelnor::SearchBookmark& bookmark) const noexcept {
    return zelnor::hashOf(bookmark.id, bookmark.name, bookmark.query, bookmark.filter,
                          bookmark.categoryID, bookmark.createdAt, bookmark.sortOrder);
  }
};
