#include <sys/resource.h>

#include <csignal>

#include <gtest/gtest.h>

#include "tests/indexer/FakeStreamTest.h"
#include "tests/support/IndexContents.h"
#include "tests/support/ResourceLimit.h"

namespace zelnor {
namespace {

constexpr auto kSecondaryIndexes =
    "SELECT count(*) FROM sqlite_schema WHERE name LIKE 'idx_files_%'";
constexpr auto kAutomerge = "SELECT v FROM files_fts_config WHERE k = 'automerge'";

class FailingTest : public test::FakeStreamTest {
 protected:
  /// What any change leads to.
  void changeSomething() {
    streams_.deliver(tree_.file("change"), platform::kFSEventStreamEventFlagItemCreated);
  }
};

TEST_F(FailingTest, ARebuildThatFailsLeavesAnIndexAsFastToUseAsBefore) {
  makeFiles(100);
  indexer_->rebuild(config_);
  const auto raw = this->raw();
  raw.exec(
      "CREATE INDEX failing ON files(CASE name WHEN 'bad' THEN abs(-9223372036854775808) END)");
  tree_.file("bad");
  EXPECT_THROW(indexer_->rebuild(config_), DatabaseError);
  EXPECT_EQ(status().state.kind, IndexStatus::State::Kind::error);
  main().await(actor().settled());
  EXPECT_EQ(raw.integer(kSecondaryIndexes), 5);
  EXPECT_EQ(raw.integer(kAutomerge), 4);
  EXPECT_TRUE(streams_.isRunning()) << "the older monitoring goes on";
  EXPECT_EQ(streams_.started().size(), 1U);
}

TEST_F(FailingTest, AFullDiskIsGotOverOnceThereIsRoom) {
  makeFiles(25'000);
  std::signal(SIGXFSZ, SIG_IGN);
  main().await(actor().startMonitoring(config_));
  {
    const test::ResourceLimit full(RLIMIT_FSIZE, 5 << 20);
    EXPECT_THROW(indexer_->rebuild(config_), std::exception);
  }
  changeSomething();
  const auto raw = this->raw();
  main().runUntil(
      [&] { return raw.integer(kSecondaryIndexes) == 5 && raw.integer(kAutomerge) == 4; });
  EXPECT_TRUE(raw.isSound());
  main().await(actor().shutDown());
  // The next launch goes on with what this one could not end.
  relaunch();
  main().await(actor().resume(config_));
  EXPECT_EQ(test::indexed(*indexer_).size(), 25'031U);
}

TEST_F(FailingTest, ALaunchWhoseRebuildFailsFollowsChangesAllTheSame) {
  const auto raw = this->raw();
  raw.exec(
      "CREATE INDEX failing ON files(CASE name WHEN 'bad' THEN abs(-9223372036854775808) END)");
  tree_.file("bad");
  EXPECT_THROW(main().await(actor().resume(config_)), DatabaseError);
  EXPECT_TRUE(streams_.isRunning());
}

TEST_F(FailingTest, MergingThatFailedGoesOnWithTheNextChange) {
  makeFiles(24'000);  // fewer would leave nothing worth merging
  const auto raw = this->raw();
  streams_.onStart = [&] { raw.exec("BEGIN IMMEDIATE"); };  // before merging begins
  indexer_->rebuild(config_);
  main().await(actor().shutDown());
  streams_.onStart = [] {};
  raw.exec("ROLLBACK");
  ASSERT_EQ(raw.integer(kAutomerge), 0);
  relaunch();
  raw.exec("ALTER TABLE files_fts_idx RENAME TO elsewhere");
  main().await(actor().resume(config_));
  EXPECT_THROW(main().await(actor().settled()), DatabaseError);
  raw.exec("ALTER TABLE elsewhere RENAME TO files_fts_idx");
  changeSomething();
  main().runUntil([&] { return raw.integer(kAutomerge) == 4; });
  EXPECT_TRUE(raw.isSound());
}

}  // namespace
}  // namespace zelnor
