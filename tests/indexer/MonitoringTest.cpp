#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/IndependentWalk.h"
#include "tests/support/IndexContents.h"
#include "tests/support/IndexerFixture.h"
#include "tests/support/RawDatabase.h"

namespace zelnor {
namespace {

using EventType = FSEventItem::EventType;

class MonitoringTest : public testing::Test {
 protected:
  const test::TemporaryFolder tree_;
  const test::TemporaryFolder data_;
  test::Indexer indexer_{data_.path(), /*followsChanges=*/true};

  /// Waits until the index holds what is on the disk.
  static void waitUntilCurrent(test::Indexer& indexer, const std::string& root) {
    indexer.main().runUntil(
        [&] { return test::indexed(indexer) == test::walkIndependently(root); });
  }
};

TEST_F(MonitoringTest, TheIndexFollowsWhatHappensToTheTree) {
  tree_.file("a/b/old", "1");
  indexer_.rebuild(test::configurationOf(tree_.path()));
  tree_.file("a/new", "12");
  tree_.file("deep/er/est", "123");
  std::filesystem::remove(tree_ / "a/b/old");
  waitUntilCurrent(indexer_, tree_.path());
  std::filesystem::rename(tree_ / "deep", tree_ / "moved");
  tree_.file("a/new", "longer than before");
  ASSERT_EQ(symlink("nowhere", (tree_ / "link").c_str()), 0);
  waitUntilCurrent(indexer_, tree_.path());
  std::filesystem::remove_all(tree_ / "moved");
  tree_.folder("moved");  // a folder where a folder was
  std::filesystem::remove(tree_ / "link");
  tree_.folder("link");  // and one where a link was
  waitUntilCurrent(indexer_, tree_.path());
  EXPECT_TRUE(test::RawDatabase(data_ / "index.sqlite").isSound());
  EXPECT_TRUE(indexer_.defaults().get<std::uint64_t>("FSEventsLastEventID").value_or(0) > 0);
}

TEST_F(MonitoringTest, TheStatusSaysHowManyFoldersAreFollowedOnceTheyAre) {
  tree_.file("a/b/file");
  const auto& status = indexer_.actor().status().value();
  EXPECT_EQ(status.followed, std::nullopt);
  indexer_.rebuild(test::configurationOf(tree_.path()));
  indexer_.main().runUntil([&] { return status.followed.has_value(); });
  EXPECT_GT(status.followed->live + status.followed->swept, 0);
}

TEST_F(MonitoringTest, ManyChangesAtOnceLeaveTheFullTextTableAsItWas) {
  tree_.file("kept");
  indexer_.rebuild(test::configurationOf(tree_.path()));
  for (int i = 0; i < 12'000; ++i) tree_.file(std::to_string(i / 1000) + "/" + std::to_string(i));
  waitUntilCurrent(indexer_, tree_.path());
  std::filesystem::rename(tree_ / "3", tree_ / "moved");
  for (const auto* folder : {"0", "1", "2", "4", "5", "6"}) {
    std::filesystem::remove_all(tree_ / folder);
  }
  waitUntilCurrent(indexer_, tree_.path());
  const test::RawDatabase database(data_ / "index.sqlite");
  indexer_.main().runUntil([&] {  // merging goes on as before
    return database.integer("SELECT v FROM files_fts_config WHERE k = 'automerge'") > 0;
  });
  indexer_.main().await(indexer_.actor().settled());
  EXPECT_TRUE(database.isSound());
}

TEST_F(MonitoringTest, ARestartCatchesUpWithoutARebuild) {
  tree_.file("kept");
  tree_.file("gone/with/its/folder");
  const auto config = test::configurationOf(tree_.path());
  indexer_.rebuild(config);
  indexer_.main().await(indexer_.actor().shutDown());

  std::filesystem::remove_all(tree_ / "gone");
  tree_.file("kept", "but changed");
  tree_.file("fresh/file");
  test::Indexer next(data_.path(), /*followsChanges=*/true);
  next.main().await(next.actor().resume(config));
  waitUntilCurrent(next, tree_.path());
  EXPECT_FALSE(next.actor().status().value().lastIndexDate) << "no rebuild";
}

TEST_F(MonitoringTest, TheLastEventOfAPathCounts) {
  const auto there = tree_.file("there");
  const auto gone = tree_ / "gone";
  const struct {
    const char* what;
    std::vector<FSEventItem> events;
    std::size_t rows;
  } rows[] = {
      {"created", {{there, EventType::created, 0}}, 1},
      {"created, then removed",
       {{there, EventType::created, 0}, {there, EventType::removed, 0}},
       0},
      {"removed, then created",
       {{there, EventType::removed, 0}, {there, EventType::created, 0}},
       1},
      {"modified, but gone", {{there, EventType::renamed, 0}, {gone, EventType::modified, 0}}, 1},
      {"renamed away", {{gone, EventType::renamed, 0}}, 1},
  };
  for (const auto& row : rows) {
    indexer_.main().await(indexer_.actor().handleFSEvents(row.events));
    EXPECT_EQ(test::indexed(indexer_).size(), row.rows) << row.what;
  }
}

TEST_F(MonitoringTest, OnlyAnUpdateThatStoresSomethingChangesTheStatus) {
  const auto path = tree_.file("there");
  auto& status = indexer_.actor().status();
  indexer_.main().await(indexer_.actor().handleFSEvents({{path, EventType::created, 0}}));
  indexer_.main().runReady();
  EXPECT_EQ(status.value().totalFiles, 1);
  bool isTold = false;  // what shows files needs to know all the same
  const auto observation = status.observe([&](const IndexStatus&) { isTold = true; });
  indexer_.main().await(indexer_.actor().handleFSEvents({{path, EventType::removed, 0}}));
  indexer_.main().runReady();
  EXPECT_EQ(status.value().totalFiles, 1);
  EXPECT_TRUE(isTold);
  EXPECT_TRUE(test::indexed(indexer_).empty());
}

TEST_F(MonitoringTest, TwoRequestsInARowStartOneAutomaticRebuild) {
  tree_.file("a");
  auto& actor = indexer_.actor();
  indexer_.main().await(actor.scheduleAutomaticRebuild("nothing is configured yet"));
  EXPECT_TRUE(indexer_.log().empty());
  indexer_.main().await(actor.startMonitoring(test::configurationOf(tree_.path())));
  indexer_.main().await(actor.scheduleAutomaticRebuild("first"));
  indexer_.main().await(actor.scheduleAutomaticRebuild("second"));
  indexer_.main().runUntil([&] { return actor.status().value().lastIndexDate.has_value(); });
  EXPECT_EQ(indexer_.log(),
            (std::vector<std::string>{"[FSEvents] Triggering automatic full rebuild: first"}));
}

}  // namespace
}  // namespace zelnor
