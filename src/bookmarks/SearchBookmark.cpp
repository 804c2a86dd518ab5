#include "bookmarks/SearchBookmark.h"

#include <string_view>

namespace zelnor {

namespace {

constexpr std::string_view kSeparator = " · ";
constexpr std::string_view kNothing = "空搜索";

void appendPart(std::string& text, std::string_view part) {
  if (!text.empty()) text += kSeparator;
  text += part;
}

}  // namespace

std::string SearchBookmark::displayDescription() const {
  std::string text;
  if (!query.empty()) appendPart(text, '"' + query + '"');
  if (filter.category != FileTypeCategory::all) appendPart(text, label(filter.category));
  if (filter.sizePreset != SizePreset::any) appendPart(text, label(filter.sizePreset));
  if (filter.datePreset != DatePreset::any) appendPart(text, label(filter.datePreset));
  if (text.empty()) text = kNothing;
  return text;
}

}  // namespace zelnor
