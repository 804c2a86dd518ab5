#include <sys/stat.h>

#include <algorithm>
#include <map>

#include <gtest/gtest.h>

#include "indexer/FileIndexActor.h"
#include "tests/support/HardTree.h"
#include "tests/support/IndependentWalk.h"
#include "tests/support/IndexContents.h"
#include "tests/support/IndexerFixture.h"
#include "tests/support/RawDatabase.h"

namespace zelnor {
namespace {

using Kind = IndexStatus::State::Kind;

class FileIndexActorTest : public testing::Test {
 protected:
  const test::TemporaryFolder tree_;
  const test::TemporaryFolder data_;
  test::Indexer indexer_{data_.path()};
};

TEST_F(FileIndexActorTest, ARebuildHoldsExactlyWhatAnIndependentWalkFinds) {
  test::makeHardTree(tree_, 200'000, /*seed=*/7);
  const auto status = indexer_.rebuild(test::configurationOf(tree_.path()));
  const auto expected = test::walkIndependently(tree_.path());
  ASSERT_GT(expected.size(), 190'000U);
  const auto found = test::indexed(indexer_);
  ASSERT_EQ(found.size(), expected.size());
  for (const auto& [path, record] : expected) {
    const auto row = found.find(path);
    ASSERT_NE(row, found.end()) << path;
    ASSERT_EQ(row->second, record) << path;
  }
  EXPECT_EQ(status.state, IndexStatus::State::idle());
  EXPECT_EQ(status.totalFiles, static_cast<std::int64_t>(expected.size()));
  EXPECT_EQ(status.processedFiles, status.totalFiles);
  EXPECT_TRUE(status.lastIndexDate);

  indexer_.main().await(indexer_.actor().settled());
  EXPECT_TRUE(test::RawDatabase(data_ / "index.sqlite").isSound());
  EXPECT_LT(std::filesystem::file_size(data_ / "index.sqlite-wal"), 16U << 20U);
}

TEST_F(FileIndexActorTest, ARebuildReplacesWhatTheIndexHeld) {
  tree_.file("old");
  indexer_.rebuild(test::configurationOf(tree_.path()));
  std::filesystem::remove(tree_ / "old");
  tree_.file("new");
  indexer_.defaults().set("FSEventsLastEventID", std::uint64_t{12});
  const auto status = indexer_.rebuild(test::configurationOf(tree_.path()));
  EXPECT_EQ(status.totalFiles, 1);
  EXPECT_EQ(test::indexed(indexer_).begin()->second.name, "new");
  EXPECT_FALSE(indexer_.defaults().value("FSEventsLastEventID"));
}

TEST_F(FileIndexActorTest, RootsThatOverlapGiveEachEntryOnce) {
  tree_.file("a/b/c");
  auto config = test::configurationOf(tree_.path());
  config.includedPaths = {tree_ / "a", tree_.path(), tree_ / "missing", tree_ / "a"};
  EXPECT_EQ(indexer_.rebuild(config).totalFiles, 3);
  EXPECT_TRUE(test::RawDatabase(data_ / "index.sqlite").isSound());
}

TEST_F(FileIndexActorTest, ANewerRebuildCancelsTheOlderWhichEndsWithoutAnError) {
  for (int i = 0; i < 30'000; ++i) tree_.file(std::to_string(i % 30) + "/" + std::to_string(i));
  const test::TemporaryFolder other;
  other.file("only");
  bool olderEnded = false;
  std::vector<IndexStatus> seen;
  const auto observation =
      indexer_.actor().status().observe([&](const IndexStatus& status) { seen.push_back(status); });
  const auto older =
      tasks::Task::spawn(indexer_.main().executor(), [&](std::stop_token) -> tasks::Async<void> {
        co_await indexer_.actor().rebuildIndex(test::configurationOf(tree_.path()));
        olderEnded = true;
      });
  indexer_.main().runUntil([&] { return !seen.empty() && seen.back().processedFiles > 0; });
  indexer_.main().await(indexer_.actor().rebuildIndex(test::configurationOf(other.path())));
  indexer_.main().await(older.wait());
  EXPECT_TRUE(olderEnded);
  indexer_.main().runReady();
  EXPECT_EQ(seen.back().state, IndexStatus::State::idle());
  EXPECT_EQ(seen.back().totalFiles, 1);
  EXPECT_EQ(test::indexed(indexer_).size(), 1U);
}

TEST_F(FileIndexActorTest, TheStatusCountsBatchesAndShowsTheOldTotalMeanwhile) {
  tree_.file("first");
  indexer_.rebuild(test::configurationOf(tree_.path()));
  for (int i = 0; i < 25'000; ++i) tree_.file(std::to_string(i % 25) + "/" + std::to_string(i));
  std::vector<IndexStatus> seen;
  const auto observation =
      indexer_.actor().status().observe([&](const IndexStatus& status) { seen.push_back(status); });
  indexer_.rebuild(test::configurationOf(tree_.path()));
  std::vector<std::int64_t> processed;
  for (const auto& status : seen) {
    if (status.state.kind == Kind::indexing) {
      EXPECT_EQ(status.totalFiles, 1);
      processed.push_back(status.processedFiles);
    }
  }
  // The previous count until the first batch is written; 25,000 files in 25 folders, and one more
  // file.
  EXPECT_EQ(processed, (std::vector<std::int64_t>{1, 10'000, 20'000, 25'026}));
  EXPECT_EQ(seen.back().totalFiles, 25'026);
}

TEST_F(FileIndexActorTest, AFailedRebuildTellsCallerAndStatus) {
  tree_.file("a");
  test::RawDatabase(data_ / "index.sqlite")
      .exec("CREATE INDEX failing ON files(abs(-9223372036854775807 - length(name)))");
  try {
    indexer_.rebuild(test::configurationOf(tree_.path()));
    FAIL() << "no error";
  } catch (const DatabaseError& error) {
    indexer_.main().runReady();
    EXPECT_EQ(indexer_.actor().status().value().state, IndexStatus::State::error(error.what()));
  }
}

TEST_F(FileIndexActorTest, ShuttingDownStopsARebuildAtOnce) {
  for (int i = 0; i < 30'000; ++i) tree_.file(std::to_string(i % 30) + "/" + std::to_string(i));
  const auto rebuild =
      tasks::Task::spawn(indexer_.main().executor(), [&](std::stop_token) -> tasks::Async<void> {
        co_await indexer_.actor().rebuildIndex(test::configurationOf(tree_.path()));
      });
  indexer_.main().runUntil([&] { return indexer_.actor().status().value().processedFiles > 0; });
  indexer_.main().await(indexer_.actor().shutDown());
  indexer_.main().await(rebuild.wait());
  EXPECT_LT(test::indexed(indexer_).size(), 30'030U);
}

}  // namespace
}  // namespace zelnor
