#pragma once

#include <string_view>

#include "search/SearchMode.h"

namespace zelnor {

/// Decides from the text of a query alone how it is to be matched.
struct QueryParser {
  /// "r:" or "re:" before something makes a regular expression, a "*" or "?" anywhere else a
  /// wildcard pattern. White space around the text (Unicode category Zs, and tabs; line breaks are
  /// none) does not count. Bytes that are not UTF-8 are kept as they are.
  static SearchMode parse(std::string_view text);
};

}  // namespace zelnor
