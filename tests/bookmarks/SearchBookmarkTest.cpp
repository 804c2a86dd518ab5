#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "bookmarks/SearchBookmark.h"

namespace zelnor {
namespace {

TEST(SearchBookmark, DescribesWhatItSearchesFor) {
  const std::vector<std::tuple<std::string, SearchFilter, std::string>> cases{
      {"", {.customMinSize = 1, .customToDate = Date{1}}, "空搜索"},
      {"report", {.category = FileTypeCategory::document}, "\"report\" · 文档"},
      {" ", {.sizePreset = SizePreset::huge}, "\" \" · 100MB ~ 1GB"},
      {"",
       {.category = FileTypeCategory::executable, .datePreset = DatePreset::custom},
       "应用/安装包 · 自定义..."},
  };
  for (const auto& [query, filter, description] : cases) {
    SearchBookmark bookmark;
    bookmark.name = "name";
    bookmark.query = query;
    bookmark.filter = filter;
    EXPECT_EQ(bookmark.displayDescription(), description);
  }
}

}  // namespace
}  // namespace zelnor
