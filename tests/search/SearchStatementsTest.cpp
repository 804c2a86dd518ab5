#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "search/SearchStatements.h"

namespace zelnor {
namespace {

using Bindings = std::vector<Binding>;

const std::string kMatch = "f.id IN (SELECT rowid FROM files_fts WHERE files_fts MATCH ?)";
const std::string kSelect = "SELECT f.id, f.name, f.path, f.size, f.mtime, f.kind, f.inode";

SelectStatement whereFor(const std::string& text, const SearchFilter& filter = {}) {
  return buildWhereClause(SearchQuery::parsed(text, filter));
}

TEST(SearchStatements, TurnTheTextIntoOneCondition) {
  struct Case {
    std::string text;
    std::string where;
    Bindings bindings;
  };
  const std::vector<Case> cases{
      {"cat picture", "WHERE " + kMatch, {R"(name:"cat" name:"picture")"}},
      {"  cat   picture ", "WHERE " + kMatch, {R"(name:"cat" name:"picture")"}},
      {"ab cdef", "WHERE " + kMatch + " AND f.name LIKE ?", {R"(name:"cdef")", "%ab%"}},
      {"x abc yz def",
       "WHERE " + kMatch + " AND f.name LIKE ? AND f.name LIKE ?",
       {R"(name:"abc" name:"def")", "%x%", "%yz%"}},
      {"ab cd", "WHERE f.name LIKE ?", {"%ab cd%"}},
      {"ab  cd", "WHERE f.name LIKE ?", {"%ab  cd%"}},
      {R"(a"b OR)", "WHERE " + kMatch + " AND f.name LIKE ?", {R"(name:"a""b")", "%OR%"}},
      {"报告", "WHERE f.name LIKE ?", {"%报告%"}},
      {"报告书", "WHERE " + kMatch, {R"(name:"报告书")"}},
      {"100%_", "WHERE " + kMatch, {R"(name:"100%_")"}},
      {"\xE9\x80 x", "WHERE f.name LIKE ?", {"%\xE9\x80 x%"}},
      {"a?[c]", "WHERE lower(f.name) GLOB lower(?)", {"a?[c]"}},
      {" re:^IMG_\\d+.*r:x ", "WHERE f.name LIKE ?", {"% ^IMG_\\d+.%"}},
      {"r:re:e\u0301e\u0301e\u0301", "WHERE f.name LIKE ?", {"%e\u0301e\u0301e\u0301%"}},
      {"r:e\u0301234567890ab", "WHERE f.name LIKE ?", {"%e\u0301234567890%"}},
      {"", "", {}},
  };
  for (const auto& [text, where, bindings] : cases) {
    const auto statement = whereFor(text);
    EXPECT_EQ(statement.sql, where) << text;
    EXPECT_EQ(statement.bindings, bindings) << text;
  }
}

TEST(SearchStatements, AddTheFilterAfterTheText) {
  struct Case {
    SearchFilter filter;
    std::string condition;
    Bindings bindings;
  };
  const auto lower = std::int64_t{1'048'576};
  const auto upper = std::int64_t{5'000'000};
  const std::vector<Case> cases{
      {{.category = FileTypeCategory::folder}, " AND f.kind = 1", {}},
      {{.sizePreset = SizePreset::medium, .customMaxSize = upper},
       " AND f.size >= ? AND f.size <= ?",
       {lower, upper}},
      {{.customFromDate = Date::fromUnix(1.9)}, " AND f.mtime >= ?", {std::int64_t{1}}},
      {{.customToDate = Date::fromUnix(-1.9)}, " AND f.mtime <= ?", {std::int64_t{-1}}},
      {{.datePreset = DatePreset::custom}, "", {}},
  };
  for (const auto& [filter, condition, bindings] : cases) {
    const auto statement = whereFor("*x", filter);
    EXPECT_EQ(statement.sql, "WHERE lower(f.name) GLOB lower(?)" + condition);
    Bindings expected{"*x"};
    expected.insert(expected.end(), bindings.begin(), bindings.end());
    EXPECT_EQ(statement.bindings, expected);
  }
}

TEST(SearchStatements, APresetDateCountsBackFromNow) {
  const auto now = Date::fromUnix(1'700'000'000.75);
  const auto query = SearchQuery::parsed("*x", {.datePreset = DatePreset::today});
  const auto statement = buildWhereClause(query, now);
  EXPECT_EQ(statement.sql, "WHERE lower(f.name) GLOB lower(?) AND f.mtime >= ?");
  ASSERT_EQ(statement.bindings.size(), 2U);
  EXPECT_EQ(std::get<std::int64_t>(statement.bindings[1]),
            fromDate(DatePreset::today, now)->wholeUnixSeconds());
}

TEST(SearchStatements, ACategoryListsItsExtensions) {
  const auto statement = whereFor("ab", {.category = FileTypeCategory::document});
  EXPECT_EQ(statement.sql,
            "WHERE f.name LIKE ? AND lower(substr(f.name, instr(f.name, '.') + 1)) IN "
            "(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  ASSERT_EQ(statement.bindings.size(), 20U);
  EXPECT_EQ(statement.bindings.front(), Binding("%ab%"));
  EXPECT_EQ(std::count(statement.bindings.begin(), statement.bindings.end(), Binding("pdf")), 1);
}

TEST(SearchStatements, APageIsFiveLines) {
  auto query = SearchQuery::parsed("*x", {.category = FileTypeCategory::folder}, SortField::size,
                                   /*sortAscending=*/false);
  const auto head = kSelect + "\nFROM files f\nWHERE lower(f.name) GLOB lower(?) AND f.kind = 1\n";
  EXPECT_EQ(buildSearchSQL(query, 200, 200).sql,
            head + "ORDER BY f.size DESC\nLIMIT 200 OFFSET 200");

  query.sortAscending = true;
  const std::vector<std::pair<SortField, std::string>> orders{
      {SortField::relevance, ""},
      {SortField::name, "ORDER BY lower(f.name) ASC"},
      {SortField::path, "ORDER BY f.path ASC"},
      {SortField::size, "ORDER BY f.size ASC"},
      {SortField::date, "ORDER BY f.mtime ASC"}};
  for (const auto& [field, order] : orders) {
    query.sortBy = field;
    EXPECT_EQ(buildSearchSQL(query, 10, 0).sql, head + order + "\nLIMIT 10 OFFSET 0");
  }
}

TEST(SearchStatements, AnEmptyQueryListsEveryRowWhateverFilterAndSort) {
  const auto query = SearchQuery::parsed(" ", {.sizePreset = SizePreset::huge}, SortField::name);
  EXPECT_EQ(buildSearchSQL(query, 50'000, 0),
            (SelectStatement{kSelect + " FROM files f LIMIT 50000 OFFSET 0", {}}));
}

TEST(SearchStatements, ACountHasTheSameCondition) {
  const auto query = SearchQuery::parsed("report", {.customMinSize = 7}, SortField::name);
  EXPECT_EQ(buildCountSQL(query),
            (SelectStatement{"SELECT COUNT(*) FROM files f WHERE " + kMatch + " AND f.size >= ?",
                             {R"(name:"report")", std::int64_t{7}}}));
}

}  // namespace
}  // namespace zelnor
