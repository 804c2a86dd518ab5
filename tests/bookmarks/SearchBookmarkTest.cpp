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

TEST(Uuid, IsReadInEitherCaseAndNothingElseIsRead) {
  const std::string valid = "0A1B2C3D-0000-4000-8000-00000000ABCD";
  EXPECT_EQ(Uuid::parse("0a1b2c3d-0000-4000-8000-00000000abcd").value().text(), valid);
  for (const auto& malformed : {std::string(), valid + "0", "{" + valid + "}",
                                "G" + valid.substr(1), valid + std::string(1, '\0')}) {
    EXPECT_FALSE(Uuid::parse(malformed)) << malformed;
  }
  const auto random = Uuid::random();
  EXPECT_EQ(Uuid::parse(random.text()), random);
  EXPECT_NE(Uuid::random(), random);
}

}  // namespace
}  // namespace zelnor
