#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

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
  void writeMuch() {
    std::vector<FileRecord> records;
    for (int i = 0; i < 2'000; ++i) {
      const auto name = std::to_string(i) + " of many";
      records.push_back({.name = name, .path = "/somewhere/" + name});
    }
    main().await(actor().sharedDatabase().batchInsert(std::move(records)));
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
  for (int batch = 0; batch < 20; ++batch) writeMuch();
  EXPECT_LT(std::filesystem::file_size(data_ / "index.sqlite-wal"), 6U << 20U);
}

TEST_F(FailingTest, ARebuildThatFailsStopsItsWalk) {
  raw().exec(
      "CREATE INDEX failing ON files(CASE name WHEN 'bad' THEN abs(-9223372036854775808) END)");
  for (int i = 0; i < 10'000; ++i) tree_.file("a/" + std::to_string(i));  // a batch
  tree_.file("0/bad");
  constexpr int kFolders = 1'000;
  for (int i = 0; i < kFolders; ++i) tree_.folder("b/" + std::to_string(i));
  std::atomic<int> listed = 0;
  streams_.onList = [&](const std::string& folder) {
    if (!folder.starts_with(tree_ / "b/")) return;
    ++listed;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));  // of a slow disk
  };
  EXPECT_THROW(indexer_->rebuild(config_), DatabaseError);
  EXPECT_LT(listed, kFolders / 2);
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
