#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <limits>
#include <stop_token>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <pthread.h>

#include "search/SearchEngine.h"
#include "store/DatabaseManager.h"
#include "tasks/Task.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

FileRecord entry(const std::string& path, std::int64_t size = 0, FileKind kind = FileKind::file) {
  FileRecord record;
  record.path = path;
  record.name = path.substr(path.rfind('/') + 1);
  record.size = size;
  record.mtime = size;
  record.kind = kind;
  return record;
}

/// An engine on an index of its own, as in the application: one connection writes, the other
/// answers searches.
class SearchEngineTest : public testing::Test {
 protected:
  void insert(std::vector<FileRecord> records) {
    main_.await(writer_.batchInsert(std::move(records)));
  }

  std::vector<std::string> paths(const SearchQuery& query, std::int64_t limit = 200,
                                 std::int64_t offset = 0) {
    std::vector<std::string> found;
    for (const auto& result : main_.await(engine_.search(query, limit, offset, {})).results) {
      EXPECT_EQ(result.id(), result.record.id);
      found.push_back(result.record.path);
    }
    return found;
  }
  /// What the text finds, in no particular order.
  std::vector<std::string> matches(const std::string& text, const SearchFilter& filter = {}) {
    auto found = paths(SearchQuery::parsed(text, filter));
    std::ranges::sort(found);
    return found;
  }
  std::int64_t count(const SearchQuery& query) {
    return main_.await(engine_.searchCount(query, {}));
  }

  test::TemporaryFolder folder_;
  test::MainThread main_;  // outlives the threads that resume on it
  tasks::ThreadPool pool_{2};
  DatabaseManager writer_{folder_.path(), pool_.executor()};
  DatabaseManager reader_{folder_.path(), pool_.executor(), DatabaseManager::Access::readOnly};
  SearchEngine engine_{reader_, pool_.executor()};
};

using Paths = std::vector<std::string>;

TEST_F(SearchEngineTest, FindsWhatTheTextSays) {
  insert({entry("/h/Report 2024.PDF"), entry("/h/report"), entry("/h/a \"quoted\" name"),
          entry("/h/IMG_1.png"), entry("/h/年度报告.doc"), entry("/h/caf\xE9 menu"),
          entry("/h/line\nbreak"), entry("/report/x"), entry("/h/100%.txt"), entry("/h/[a]")});
  struct Case {
    std::string text;
    Paths paths;
  };
  const std::vector<Case> cases{
      {"report", {"/h/Report 2024.PDF", "/h/report"}},
      {"2024 report", {"/h/Report 2024.PDF"}},
      {"re 2024", {"/h/Report 2024.PDF"}},
      {"\"quoted\"", {"/h/a \"quoted\" name"}},
      {"name:report OR", {}},
      {"报告", {"/h/年度报告.doc"}},
      {"年度报", {"/h/年度报告.doc"}},
      {"caf", {"/h/caf\xE9 menu"}},
      {"menu", {"/h/caf\xE9 menu"}},
      {"line\nb", {"/h/line\nbreak"}},
      {"RE*", {"/h/Report 2024.PDF", "/h/report"}},
      {"?", {"/report/x"}},
      {"[[]a?", {"/h/[a]"}},
      {"%.", {"/h/100%.txt", "/h/IMG_1.png", "/h/Report 2024.PDF", "/h/年度报告.doc"}},
      {"r:^img_\\d", {"/h/IMG_1.png"}},
      {"r:(", {}},
      {"  ", {}},
      {"nothing like it", {}},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(matches(text), expected) << text;
    const auto query = SearchQuery::parsed(text);
    if (query.mode.kind == SearchMode::Kind::regex) continue;
    EXPECT_EQ(count(query), static_cast<std::int64_t>(expected.size())) << text;
  }
}

TEST_F(SearchEngineTest, NarrowsByCategorySizeAndDate) {
  insert({entry("/h/x.jpg", 102'400), entry("/h/x.JPEG", 10), entry("/h/x.tar.gz", 2'000'000),
          entry("/h/a.x.pdf", 5), entry("/h/x", 0, FileKind::directory),
          entry("/h/x.app", 0, FileKind::directory)});
  EXPECT_EQ(matches("x", {.category = FileTypeCategory::image}), (Paths{"/h/x.JPEG", "/h/x.jpg"}));
  EXPECT_EQ(matches("x", {.category = FileTypeCategory::archive}), (Paths{"/h/x.tar.gz"}));
  EXPECT_EQ(matches("x", {.category = FileTypeCategory::folder}), (Paths{"/h/x", "/h/x.app"}));
  EXPECT_EQ(matches("x", {.category = FileTypeCategory::executable}), (Paths{"/h/x.app"}));
  EXPECT_EQ(matches("x", {.category = FileTypeCategory::document}), (Paths{}));
  EXPECT_EQ(matches("jpg", {.sizePreset = SizePreset::tiny}), (Paths{"/h/x.jpg"}));
  EXPECT_EQ(matches("jpg", {.sizePreset = SizePreset::small}), (Paths{"/h/x.jpg"}));
  EXPECT_EQ(matches("x", {.datePreset = DatePreset::year}), (Paths{}));
  EXPECT_EQ(matches("x", {.customFromDate = Date::fromUnix(6), .customToDate = Date::fromUnix(10)}),
            (Paths{"/h/x.JPEG"}));
  EXPECT_EQ(
      matches("r:x", {.category = FileTypeCategory::image, .sizePreset = SizePreset::huge}).size(),
      6U)
      << "a regular expression does not look at the filter";
}

TEST_F(SearchEngineTest, BothEndsOfASizeRangeBelongToIt) {
  constexpr std::int64_t kTenMiB = 10'485'760;
  constexpr std::int64_t kHundredMiB = 104'857'600;
  insert({entry("/h/10-", kTenMiB - 1), entry("/h/10", kTenMiB), entry("/h/10+", kTenMiB + 1),
          entry("/h/100-", kHundredMiB - 1), entry("/h/100", kHundredMiB),
          entry("/h/100+", kHundredMiB + 1)});
  EXPECT_EQ(matches("10", {.sizePreset = SizePreset::medium}), (Paths{"/h/10", "/h/10-"}));
  EXPECT_EQ(matches("10", {.sizePreset = SizePreset::large}),
            (Paths{"/h/10", "/h/10+", "/h/100", "/h/100-"}));
  EXPECT_EQ(matches("10", {.sizePreset = SizePreset::huge}), (Paths{"/h/100", "/h/100+"}));
}

TEST_F(SearchEngineTest, DeliversPagesInTheOrderAskedFor) {
  insert({entry("/b/ab2", 3), entry("/a/AB3", 1), entry("/c/ab1", 2)});
  const auto sorted = [](SortField field, bool ascending) {
    return SearchQuery::parsed("ab", {}, field, ascending);
  };
  EXPECT_EQ(paths(sorted(SortField::name, true)), (Paths{"/c/ab1", "/b/ab2", "/a/AB3"}));
  EXPECT_EQ(paths(sorted(SortField::path, false)), (Paths{"/c/ab1", "/b/ab2", "/a/AB3"}));
  EXPECT_EQ(paths(sorted(SortField::size, true)), (Paths{"/a/AB3", "/c/ab1", "/b/ab2"}));
  EXPECT_EQ(paths(sorted(SortField::date, true), /*limit=*/2, /*offset=*/2), (Paths{"/b/ab2"}));
}

TEST_F(SearchEngineTest, LooksForAnExpressionInTheFirstFiftyThousandRowsAlone) {
  std::vector<FileRecord> records;
  for (int i = 0; i < 50'000; ++i) records.push_back(entry("/h/" + std::to_string(i) + ".log"));
  records.push_back(entry("/h/beyond.log"));
  insert(std::move(records));
  EXPECT_EQ(main_.await(engine_.totalIndexedCount()), 50'001);
  EXPECT_EQ(paths(SearchQuery::parsed("r:log$"), /*limit=*/3).size(), 50'000U);
  EXPECT_EQ(matches("r:^beyond"), (Paths{}));
  EXPECT_EQ(matches("beyond"), (Paths{"/h/beyond.log"}));
}

/// A search that would go on for ever holds up no other, and ends when it is asked to.
TEST_F(SearchEngineTest, AnEndlessExpressionKeepsNobodyWaiting) {
  insert({entry("/h/" + std::string(200, 'a') + "b"), entry("/h/report")});
  std::atomic<bool> isLooking = false;
  const tasks::ThreadPool matchers(2);
  SearchEngine engine(reader_, matchers.executor(),
                      {.processorTime = std::chrono::hours(1'000),
                       .ticksPerName = std::numeric_limits<std::int32_t>::max(),
                       .timeOfThread = [&] {
                         isLooking = true;
                         return std::chrono::nanoseconds(0);
                       }});
  const auto endless =
      tasks::Task::spawn(main_.executor(), [&](std::stop_token stop) -> tasks::Async<void> {
        const auto query = SearchQuery::parsed("r:(a+)+$");
        auto search = engine.search(query, /*limit=*/200, /*offset=*/0, std::move(stop));
        co_await std::move(search);
      });
  main_.runUntil([&] { return isLooking.load(); });
  const auto found = [&](const std::string& text) {
    return main_.await(engine.search(SearchQuery::parsed(text), 200, 0, {})).results.size();
  };
  EXPECT_EQ(found("report"), 1U);
  EXPECT_EQ(found("r:repor.$"), 1U);
  EXPECT_FALSE(endless.isDone());
  endless.cancel();
  EXPECT_THROW(main_.await(endless.wait()), std::system_error);
}

TEST_F(SearchEngineTest, SaysWhenNamesWereGivenUp) {
  insert({entry("/h/" + std::string(200, 'a') + "b"), entry("/h/aaa")});
  SearchEngine engine(reader_, pool_.executor(), {.ticksPerName = 20});
  const auto search = [&](const std::string& text) {
    return main_.await(engine.search(SearchQuery::parsed(text), 200, 0, {}));
  };
  EXPECT_TRUE(search("r:(a+)+$").isIncomplete);
  EXPECT_EQ(search("r:(a+)+$").results.size(), 1U);
  EXPECT_FALSE(search("r:a$").isIncomplete);
  EXPECT_FALSE(search("aaa").isIncomplete);
}

/// The statement never ends by itself.
TEST_F(SearchEngineTest, AStatementStopsWhileItRunsAndBeforeItBegins) {
  const std::string endless =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT COUNT(*) FROM n";
  clockid_t timeOfThread{};
  const tasks::ThreadPool pool(1, [&] { pthread_getcpuclockid(pthread_self(), &timeOfThread); });
  DatabaseManager database(folder_.path(), pool.executor(), DatabaseManager::Access::readOnly);
  main_.await(database.totalFileCount());  // the thread has said what its clock is
  const auto isRunning = [&] {
    timespec used{};
    clock_gettime(timeOfThread, &used);
    return used.tv_sec > 0 || used.tv_nsec > 50'000'000;
  };
  const auto running =
      tasks::Task::spawn(main_.executor(), [&](std::stop_token stop) -> tasks::Async<void> {
        SelectStatement statement{endless, {}};
        auto search = database.search(std::move(statement), /*limit=*/1, std::move(stop));
        co_await std::move(search);
      });
  main_.runUntil(isRunning);
  running.cancel();
  EXPECT_THROW(main_.await(running.wait()), std::system_error);

  std::stop_source stop;
  stop.request_stop();
  EXPECT_THROW(main_.await(database.searchCount({endless, {}}, stop.get_token())),
               std::system_error);
  EXPECT_EQ(main_.await(database.searchCount({"SELECT 3", {}})), 3) << "others are not concerned";
}

}  // namespace
}  // namespace zelnor
