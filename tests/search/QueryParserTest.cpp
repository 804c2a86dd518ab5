#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "search/QueryParser.h"
#include "search/SearchQuery.h"

namespace zelnor {
namespace {

TEST(QueryParser, TakesTheModeAndPatternFromTheText) {
  using Mode = SearchMode;
  const std::vector<std::pair<std::string, SearchMode>> cases{
      {"", Mode::empty()},
      {" \t  ", Mode::empty()},
      {"  report  ", Mode::fts("report")},
      {"foo bar", Mode::fts("foo bar")},
      {"*.pdf", Mode::glob("*.pdf")},
      {" a?c ", Mode::glob("a?c")},
      {"r:^IMG_\\d+", Mode::regex("^IMG_\\d+")},
      {"re:abc", Mode::regex("abc")},
      {"r:a*", Mode::regex("a*")},
      {"r: x", Mode::regex(" x")},
      {"\tr:x ", Mode::regex("x")},
      {"r:", Mode::fts("r:")},
      {"re: ", Mode::fts("re:")},
      {"r:*", Mode::regex("*")},
      {"R:abc", Mode::fts("R:abc")},
      {"RE:abc", Mode::fts("RE:abc")},
      {"rex:abc", Mode::fts("rex:abc")},
  };
  for (const auto& [text, mode] : cases) EXPECT_EQ(QueryParser::parse(text), mode) << text;
}

TEST(QueryParser, TrimsEverySpaceOfUnicodeButNoLineBreakAndNoBrokenByte) {
  EXPECT_EQ(QueryParser::parse("\u3000\u00A0\u2009中文\u202F\u205F"), SearchMode::fts("中文"));
  EXPECT_EQ(QueryParser::parse("\n a \n"), SearchMode::fts("\n a \n"));
  EXPECT_EQ(QueryParser::parse("\u200Ba"), SearchMode::fts("\u200Ba"))
      << "a zero-width space is no space";
  EXPECT_EQ(QueryParser::parse(" \xA0 "), SearchMode::fts("\xA0"));
  EXPECT_EQ(QueryParser::parse(" \xE3\x80 "), SearchMode::fts("\xE3\x80"));
}

TEST(SearchQuery, KeepsTheTextAsTyped) {
  const auto query = SearchQuery::parsed("  report  ");
  EXPECT_EQ(query.text, "  report  ");
  EXPECT_EQ(query.mode, SearchMode::fts("report"));
}

}  // namespace
}  // namespace zelnor
