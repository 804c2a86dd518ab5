#include "search/QueryParser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace zelnor {

namespace {

/// The tab and every character of Unicode category Zs, in UTF-8, which can be compared byte by
/// byte: no character's bytes end in those of another.
constexpr std::array<std::string_view, 18> kWhiteSpace{"\t",           " ",
                                                       "\xC2\xA0",     "\xE1\x9A\x80",
                                                       "\xE2\x80\x80", "\xE2\x80\x81",
                                                       "\xE2\x80\x82", "\xE2\x80\x83",
                                                       "\xE2\x80\x84", "\xE2\x80\x85",
                                                       "\xE2\x80\x86", "\xE2\x80\x87",
                                                       "\xE2\x80\x88", "\xE2\x80\x89",
                                                       "\xE2\x80\x8A", "\xE2\x80\xAF",
                                                       "\xE2\x81\x9F", "\xE3\x80\x80"};

/// The length of the white-space character for which `isAtEdge` holds, or 0.
template <class Predicate>
std::size_t lengthAtEdge(Predicate isAtEdge) {
  const auto* const found = std::find_if(kWhiteSpace.begin(), kWhiteSpace.end(), isAtEdge);
  return found == kWhiteSpace.end() ? 0 : found->size();
}

std::string_view trimmed(std::string_view text) {
  const auto leading = [&] {
    return lengthAtEdge([&](auto space) { return text.starts_with(space); });
  };
  const auto trailing = [&] {
    return lengthAtEdge([&](auto space) { return text.ends_with(space); });
  };
  while (const auto length = leading()) text.remove_prefix(length);
  while (const auto length = trailing()) text.remove_suffix(length);
  return text;
}

/// What follows the prefix of a regular expression, if there is one and anything follows.
std::optional<std::string_view> regularExpression(std::string_view text) {
  for (const std::string_view prefix : {"r:", "re:"}) {
    if (text.starts_with(prefix) && text.size() > prefix.size()) return text.substr(prefix.size());
  }
  return std::nullopt;
}

}  // namespace

SearchMode QueryParser::parse(std::string_view text) {
  const auto query = trimmed(text);
  if (query.empty()) return SearchMode::empty();
  if (const auto pattern = regularExpression(query))
    return SearchMode::regex(std::string(*pattern));
  if (query.find_first_of("*?") != std::string_view::npos)
    return SearchMode::glob(std::string(query));
  return SearchMode::fts(std::string(query));
}

}  // namespace zelnor
