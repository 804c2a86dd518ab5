#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "bookmarks/Uuid.h"
#include "search/Hash.h"

namespace zelnor {

/// A group of bookmarks that the user made, or the one for those in no such group.
struct BookmarkCategory {
  Uuid id;
  std::string name;            ///< UTF-8
  std::int64_t sortOrder = 0;  ///< how many categories there were when this one was made

  /// The category that is always there. Its identity, which is nil, makes it so: the user may give
  /// it another name.
  static const BookmarkCategory uncategorized;
  [[nodiscard]] bool isUncategorized() const { return id == Uuid(); }

  friend bool operator==(const BookmarkCategory&, const BookmarkCategory&) = default;
};

inline const BookmarkCategory BookmarkCategory::uncategorized{
    .id = Uuid(), .name = "未分类", .sortOrder = 0};

}  // namespace zelnor

template <>
struct std::hash<zelnor::BookmarkCategory> {
  std::size_t operator()(const zelnor::BookmarkCategory& category) const noexcept {
    return zelnor::hashOf(category.id, category.name, category.sortOrder);
  }
};
