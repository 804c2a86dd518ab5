#include <sys/resource.h>

#include <csignal>

#include <gtest/gtest.h>

#include "tests/support/FakeStreams.h"
#include "tests/support/IndexContents.h"
#include "tests/support/IndexerFixture.h"
#include "tests/support/RawDatabase.h"
#include "tests/support/ResourceLimit.h"

namespace zelnor {
namespace {

constexpr auto kSecondaryIndexes =
    "SELECT count(*) FROM sqlite_schema WHERE name LIKE 'idx_files_%'";
constexpr auto kAutomerge = "SELECT v FROM files_fts_config WHERE k = 'automerge'";

class FailingTest : public testing::Test {
 protected:
  const test::TemporaryFolder tree_;
  const test::TemporaryFolder data_;
  test::FakeStreams streams_;
  const IndexConfiguration config_ = test::configurationOf(tree_.path());

  std::unique_ptr<test::Indexer> launch() {
    return std::make_unique<test::Indexer>(data_.path(), /*followsChanges=*/true,
                                           streams_.factory());
  }
  [[nodiscard]] std::string database() const { return data_ / "index.sqlite"; }
  void makeFiles(int count) {
    for (int i = 0; i < count; ++i) tree_.file(std::to_string(i % 30) + "/" + std::to_string(i));
  }
  /// What any change leads to.
  void changeSomething() {
    streams_.deliver(tree_.file("change"), platform::kFSEventStreamEventFlagItemCreated);
  }
};

TEST_F(FailingTest, ARebuildThatFailsLeavesAnIndexAsFastToUseAsBefore) {
  makeFiles(100);
  const auto indexer = launch();
  indexer->rebuild(config_);
  const test::RawDatabase raw(database());
  raw.exec(
      "CREATE INDEX failing ON files(CASE name WHEN 'bad' THEN abs(-9223372036854775808) END)");
  tree_.file("bad");
  EXPECT_THROW(indexer->rebuild(config_), DatabaseError);
  EXPECT_EQ(indexer->actor().status().value().state.kind, IndexStatus::State::Kind::error);
  indexer->main().await(indexer->actor().settled());
  EXPECT_EQ(raw.integer(kSecondaryIndexes), 5);
  EXPECT_EQ(raw.integer(kAutomerge), 4);
  EXPECT_TRUE(streams_.isRunning()) << "the older monitoring goes on";
  EXPECT_EQ(streams_.started().size(), 1U);
}

TEST_F(FailingTest, AFullDiskIsGotOverOnceThereIsRoom) {
  makeFiles(25'000);
  std::signal(SIGXFSZ, SIG_IGN);
  const auto indexer = launch();
  indexer->main().await(indexer->actor().startMonitoring(config_));
  {
    const test::ResourceLimit full(RLIMIT_FSIZE, 5 << 20);
    EXPECT_THROW(indexer->rebuild(config_), std::exception);
  }
  changeSomething();
  const test::RawDatabase raw(database());
  indexer->main().runUntil(
      [&] { return raw.integer(kSecondaryIndexes) == 5 && raw.integer(kAutomerge) == 4; });
  EXPECT_TRUE(raw.isSound());
  indexer->main().await(indexer->actor().shutDown());
  // The next launch goes on with what this one could not end.
  const auto next = launch();
  next->main().await(next->actor().resume(config_));
  EXPECT_EQ(test::indexed(*next).size(), 25'031U);
}

TEST_F(FailingTest, ALaunchWhoseRebuildFailsFollowsChangesAllTheSame) {
  const auto indexer = launch();
  const test::RawDatabase raw(database());
  raw.exec(
      "CREATE INDEX failing ON files(CASE name WHEN 'bad' THEN abs(-9223372036854775808) END)");
  tree_.file("bad");
  EXPECT_THROW(indexer->main().await(indexer->actor().resume(config_)), DatabaseError);
  EXPECT_TRUE(streams_.isRunning());
}

TEST_F(FailingTest, MergingThatFailedGoesOnWithTheNextChange) {
  makeFiles(24'000);  // fewer would leave nothing worth merging
  auto indexer = launch();
  const test::RawDatabase raw(database());
  streams_.onStart = [&] { raw.exec("BEGIN IMMEDIATE"); };  // before merging begins
  indexer->rebuild(config_);
  indexer->main().await(indexer->actor().shutDown());
  streams_.onStart = [] {};
  raw.exec("ROLLBACK");
  ASSERT_EQ(raw.integer(kAutomerge), 0);
  indexer = launch();
  raw.exec("ALTER TABLE files_fts_idx RENAME TO elsewhere");
  indexer->main().await(indexer->actor().resume(config_));
  EXPECT_THROW(indexer->main().await(indexer->actor().settled()), DatabaseError);
  raw.exec("ALTER TABLE elsewhere RENAME TO files_fts_idx");
  changeSomething();
  indexer->main().runUntil([&] { return raw.integer(kAutomerge) == 4; });
  EXPECT_TRUE(raw.isSound());
}

}  // namespace
}  // namespace zelnor
