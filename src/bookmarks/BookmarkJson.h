#pragma once

#include <nlohmann/json_fwd.hpp>

#include "bookmarks/BookmarkCategory.h"
#include "bookmarks/SearchBookmark.h"

namespace zelnor {

/// The stored form of the records: every field, in the order of the structure.
void to_json(nlohmann::ordered_json& json, const SearchBookmark& bookmark);
void to_json(nlohmann::ordered_json& json, const BookmarkCategory& category);

/// Require every field, in any order, and ignore unknown ones. Throw `nlohmann::json::exception` or
/// `std::invalid_argument` if one is missing, of another type or malformed.
void from_json(const nlohmann::ordered_json& json, SearchBookmark& bookmark);
void from_json(const nlohmann::ordered_json& json, BookmarkCategory& category);

}  // namespace zelnor
