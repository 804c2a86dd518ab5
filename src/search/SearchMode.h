#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace zelnor {

/// How a query's text is matched, with the pattern that this mode takes from the text.
struct SearchMode {
  enum class Kind : std::uint8_t {
    fts,    ///< names that contain the pattern's words
    glob,   ///< names that match the wildcards of the pattern as a whole
    regex,  ///< names in which the regular expression is found
    empty   ///< nothing to search
  };

  static SearchMode fts(std::string pattern) { return {Kind::fts, std::move(pattern)}; }
  static SearchMode glob(std::string pattern) { return {Kind::glob, std::move(pattern)}; }
  static SearchMode regex(std::string pattern) { return {Kind::regex, std::move(pattern)}; }
  static SearchMode empty() { return {}; }

  Kind kind = Kind::empty;
  std::string pattern;  ///< UTF-8, trimmed; empty in mode `empty` alone

  friend bool operator==(const SearchMode&, const SearchMode&) = default;
};

}  // namespace zelnor
