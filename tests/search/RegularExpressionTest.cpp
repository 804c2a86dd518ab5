#include <atomic>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <memory>
#include <mutex>
#include <set>
#include <stop_token>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "search/RegularExpression.h"
#include "search/RegularExpressionSearch.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"

namespace zelnor {
namespace {

using Answer = RegularExpression::Answer;
using Names = std::vector<std::string>;

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
    const auto answer = expression->lookIn(name, [](std::int32_t) { return true; });
    EXPECT_EQ(answer, found ? Answer::found : Answer::notFound) << pattern << " in " << name;
  }
}

TEST(RegularExpression, ThatDoesNotCompileIsNothing) {
  for (const auto* const pattern : {"(", "*", "[a", "a{2,1}", "\\"}) {
    EXPECT_FALSE(RegularExpression::compile(pattern)) << pattern;
  }
}

TEST(RegularExpression, GivesUpANameWhenPatienceEnds) {
  auto expression = RegularExpression::compile("(a+)+c|b$");
  int asked = 0;
  const auto patience = [&](std::int32_t ticks) {
    EXPECT_EQ(ticks, ++asked);
    return ticks < 10;
  };
  EXPECT_EQ(expression->lookIn("aaab", patience), Answer::found);
  EXPECT_EQ(asked, 0);
  EXPECT_EQ(expression->lookIn(kHardName, patience), Answer::givenUp);
  EXPECT_EQ(asked, 10);
  EXPECT_EQ(expression->clone().lookIn("b", patience), Answer::found);
}

FileRecord named(std::string name) {
  FileRecord record;
  record.path = "/" + name;
  record.name = std::move(name);
  return record;
}

class RegularExpressionSearchTest : public testing::Test {
 protected:
  MatchingRecords find(const std::string& pattern, const Names& names, MatchBudget budget = {}) {
    std::vector<FileRecord> records;
    for (const auto& name : names) records.push_back(named(name));
    auto expression = RegularExpression::compile(pattern);
    return main_.await(matchingRecords(std::move(expression).value(), std::move(records),
                                       pool_.executor(), std::move(budget), stop_.get_token()));
  }
  static Names namesOf(const MatchingRecords& matching) {
    Names names;
    for (const auto& record : matching.records) names.push_back(record.name);
    return names;
  }

  std::stop_source stop_;
  test::MainThread main_;  // outlives the threads that resume on it
  tasks::ThreadPool pool_{tasks::processorCount()};
};

TEST_F(RegularExpressionSearchTest, KeepsTheOrderOfTheRecords) {
  const auto found = find("[ab]", {"long b", "c", "a", "ab"});
  EXPECT_EQ(namesOf(found), (Names{"long b", "a", "ab"}));
  EXPECT_FALSE(found.isIncomplete);
}

/// Each of these takes twice as long as the one before, the last some hundred milliseconds.
TEST_F(RegularExpressionSearchTest, FindsEveryNameWhileThereIsProcessorTime) {
  Names names;
  for (std::size_t length = 12; length < 22; ++length)
    names.push_back(std::string(length, 'a') + "b");
  const auto found = find("(a+)+c|b$", names);
  EXPECT_EQ(namesOf(found), names);
  EXPECT_FALSE(found.isIncomplete);
}

TEST_F(RegularExpressionSearchTest, GivesUpANameThatTakesTooLongAndNoOther) {
  const auto found = find("(a+)+$", {"x.aaa", kHardName, "aaaa", "b"}, {.ticksPerName = 50});
  EXPECT_EQ(namesOf(found), (Names{"x.aaa", "aaaa"}));
  EXPECT_TRUE(found.isIncomplete);
  EXPECT_FALSE(find("(a+)+\\.jpg$", {kHardName, "b"}).isIncomplete)
      << "what every match must hold is looked for first";
}

TEST_F(RegularExpressionSearchTest, CountsProcessorTimeAloneAndLeavesOutTheLongestNames) {
  Names names;
  for (std::size_t length = 200; length > 0; --length)
    names.insert(names.end(), 32, std::string(length, 'a'));
  const auto search = [&](std::chrono::seconds atEachLook) {
    // Every thread's own, as the real one is.
    const auto time = [atEachLook] {
      thread_local std::chrono::seconds now{};
      return now += atEachLook;
    };
    return find("a", names, {.processorTime = std::chrono::seconds(10), .timeOfThread = time});
  };
  const auto all = search(std::chrono::seconds(0));
  EXPECT_EQ(all.records.size(), names.size());
  EXPECT_FALSE(all.isIncomplete);

  const auto some = namesOf(search(std::chrono::seconds(1)));
  ASSERT_FALSE(some.empty());
  EXPECT_LT(some.size(), names.size() / 2);
  EXPECT_EQ(some.back().size(), 1U);
  // Within a few portions of names.
  EXPECT_LE(some.front().size(), some.size() / 32 + 10);
  EXPECT_TRUE(search(std::chrono::seconds(1)).isIncomplete);
}

TEST_F(RegularExpressionSearchTest, LooksAtNamesOnAsManyThreadsAsThereAreProcessors) {
  std::mutex mutex;
  std::condition_variable came;
  std::set<std::thread::id> threads;
  // Every thread asks before its first name; none gets on before all have.
  const auto time = [&] {
    std::unique_lock lock(mutex);
    threads.insert(std::this_thread::get_id());
    came.notify_all();
    came.wait_for(lock, std::chrono::seconds(20),
                  [&] { return threads.size() == tasks::processorCount(); });
    return std::chrono::nanoseconds(0);
  };
  find("a", Names(100 * tasks::processorCount(), "a"), {.timeOfThread = time});
  EXPECT_EQ(threads.size(), tasks::processorCount());
}

/// Without end: only the request to stop ends it.
TEST_F(RegularExpressionSearchTest, StopsInTheMiddleOfAName) {
  const MatchBudget endless{.processorTime = std::chrono::hours(1'000),
                            .ticksPerName = std::numeric_limits<std::int32_t>::max(),
                            .timeOfThread = [this, looks = std::make_shared<std::atomic<int>>()] {
                              if (++*looks > 100) stop_.request_stop();
                              return std::chrono::nanoseconds(0);
                            }};
  EXPECT_THROW(find("(a+)+$", {kHardName}, endless), std::system_error);
}

}  // namespace
}  // namespace zelnor
