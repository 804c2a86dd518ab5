#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "search/Date.h"
#include "search/FileTypeCategory.h"
#include "search/SearchQuery.h"
#include "store/SelectStatement.h"

namespace zelnor {

/// The condition of a query, "WHERE …" or nothing, over table `files` under the name f. Presets
/// count back from `now`.
SelectStatement buildWhereClause(const SearchQuery& query, Date now = Date::now());

/// The statement for one page of a query: id, name, path, size, mtime, kind and inode of each
/// match. A query with nothing to search lists every row.
SelectStatement buildSearchSQL(const SearchQuery& query, std::int64_t limit, std::int64_t offset,
                               Date now = Date::now());

/// The statement for the number of matches.
SelectStatement buildCountSQL(const SearchQuery& query, Date now = Date::now());

/// The extensions that stand for a category; none for those that do not go by name.
std::vector<std::string_view> extensionsForCategory(FileTypeCategory category);

}  // namespace zelnor
