#pragma once

#include <string>
#include <utility>

#include "search/QueryParser.h"
#include "search/SearchFilter.h"
#include "search/SearchMode.h"
#include "search/SortField.h"

namespace zelnor {

/// One search as a value: everything the engine needs to know.
struct SearchQuery {
  std::string text;  ///< as typed, not trimmed
  SearchMode mode;   ///< what `QueryParser` makes of the text
  SearchFilter filter;
  SortField sortBy = SortField::relevance;
  bool sortAscending = true;

  /// A query whose mode is that of its text.
  static SearchQuery parsed(std::string text, SearchFilter filter = {},
                            SortField sortBy = SortField::relevance, bool sortAscending = true) {
    auto mode = QueryParser::parse(text);
    return {std::move(text), std::move(mode), filter, sortBy, sortAscending};
  }

  friend bool operator==(const SearchQuery&, const SearchQuery&) = default;
};

}  // namespace zelnor
