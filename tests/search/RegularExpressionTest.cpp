#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "search/RegularExpression.h"
#include "search/RegularExpressionSearch.h"

namespace zelnor {
namespace {

/// Without its last byte `(a+)+$` would match at once.
const auto kHardName = std::string(254, 'a') + "b";

TEST(RegularExpression, IsSearchedForAnywhereInTheNameWhateverItsCase) {
  struct Case {
    std::string pattern;
    std::string name;
    bool found;
  };
  const std::vector<Case> cases{
      {"img_\\d+", "old IMG_42.png", true},
      {"^img_\\d+$", "old IMG_42.png", false},
      {"ÉTÉ", "été.txt", true},
      {"\\p{Han}{2}", "年度报告.doc", true},
      {"^.\\.txt$", "\U0001F600.txt", true},
      {"a\\uFFFDb",
       "a\xFF"
       "b",
       true},
      {"report", "\xE9\xE9 report", true},
      {"x*", "abc", true},
      {"a\nb", "a\nb", true},
      {"a.b", "a\nb", false},
  };
  for (const auto& [pattern, name, found] : cases) {
    auto expression = RegularExpression::compile(pattern);
    ASSERT_TRUE(expression) << pattern;
    EXPECT_EQ(expression->isFoundIn(name), found) << pattern << " in " << name;
  }
}

TEST(RegularExpression, ThatDoesNotCompileIsNothing) {
  for (const auto* const pattern : {"(", "*", "[a", "a{2,1}", "\\"}) {
    EXPECT_FALSE(RegularExpression::compile(pattern)) << pattern;
  }
}

TEST(RegularExpression, IsNotFoundInANameThatTakesTooLong) {
  auto expression = RegularExpression::compile("(a+)+c|b$");
  EXPECT_TRUE(expression->isFoundIn("aaab"));
  EXPECT_FALSE(expression->isFoundIn(kHardName));
}

FileRecord named(std::string name) {
  FileRecord record;
  record.path = "/" + name;
  record.name = std::move(name);
  return record;
}

std::vector<std::string> names(const std::vector<FileRecord>& records) {
  std::vector<std::string> names;
  for (const auto& record : records) names.push_back(record.name);
  return names;
}

TEST(RegularExpressionSearch, KeepsTheOrderOfTheRecords) {
  auto expression = RegularExpression::compile("[ab]");
  EXPECT_EQ(
      names(matchingRecords(*expression, {named("long b"), named("c"), named("a"), named("ab")})),
      (std::vector<std::string>{"long b", "a", "ab"}));
}

TEST(RegularExpressionSearch, LeavesOutTheLongestNamesWhenTheTimeIsUp) {
  auto expression = RegularExpression::compile("a");
  MatchBudget::Clock::time_point now{};
  // Every look at the clock costs a tenth of a second: after the start there is time for three
  // names.
  const MatchBudget budget{std::chrono::milliseconds(350), [&] {
                             const auto before = now;
                             now += std::chrono::milliseconds(100);
                             return before;
                           }};
  EXPECT_EQ(names(matchingRecords(
                *expression, {named("aaaaa"), named("a"), named("aaaa"), named("aaa"), named("aa")},
                budget)),
            (std::vector<std::string>{"a", "aaa", "aa"}));
}

TEST(RegularExpressionSearch, EndsWithinASecondWhateverTheExpression) {
  std::vector<FileRecord> records(50'000, named(kHardName));
  records.push_back(named("aaaa"));
  for (const auto* const pattern : {"(a+)+$", "^(a?){200}c"}) {
    auto expression = RegularExpression::compile(pattern);
    ASSERT_TRUE(expression) << pattern;
    auto copies = records;
    const auto start = std::chrono::steady_clock::now();
    const auto matches = matchingRecords(*expression, std::move(copies));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1)) << pattern;
    if (std::string(pattern) == "(a+)+$") {
      EXPECT_EQ(names(matches), std::vector<std::string>{"aaaa"});
    }
  }
}

}  // namespace
}  // namespace zelnor
