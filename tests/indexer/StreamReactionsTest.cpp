#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/indexer/FakeStreamTest.h"
#include "tests/support/IndexContents.h"

namespace zelnor {
namespace {

using namespace platform;  // the names of flags are long enough
using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto kLastEventID = "FSEventsLastEventID";

class StreamReactionsTest : public test::FakeStreamTest {
 protected:
  void deliverLoss() { streams_.deliver(tree_.path(), kFSEventStreamEventFlagKernelDropped, 99); }
  void waitForRows(std::size_t count) {
    main().runUntil([&] { return test::indexed(*indexer_).size() == count; });
  }
};

TEST_F(StreamReactionsTest, EachReportStoresItsNewestIdentifierAndALossStoresNone) {
  tree_.file("kept");
  indexer_->rebuild(config_);
  streams_.deliver(
      {{.path = tree_.file("a"), .flags = kFSEventStreamEventFlagItemCreated, .identifier = 12},
       {.path = tree_.file("b"), .flags = kFSEventStreamEventFlagItemCreated, .identifier = 11}});
  EXPECT_EQ(indexer_->defaults().get<std::uint64_t>(kLastEventID), 12U);
  EXPECT_TRUE(indexer_->defaults().isVolatile(kLastEventID)) << "each would wait for the disk";
  waitForRows(3);
  deliverLoss();
  EXPECT_NE(indexer_->defaults().get<std::uint64_t>(kLastEventID), 99U);
}

TEST_F(StreamReactionsTest, ALossRebuildsTheIndexAndSaysSo) {
  tree_.file("a");
  indexer_->rebuild(config_);
  tree_.file("missed");
  deliverLoss();
  waitForRows(2);
  EXPECT_THAT(indexer_->log(),
              ElementsAre("[FSEvents] Triggering automatic full rebuild: FSEvents kernel queue "
                          "dropped events"));
  raw().exec(
      "CREATE INDEX failing ON files(CASE name WHEN 'bad' THEN abs(-9223372036854775808) END)");
  tree_.file("bad");
  main().runUntil([&] { return streams_.started().size() == 2; });
  deliverLoss();
  main().runUntil([&] { return indexer_->log().size() == 3; });
  EXPECT_THAT(indexer_->log().back(), HasSubstr("[FSEvents] Automatic rebuild failed: SQL "));
}

TEST_F(StreamReactionsTest, ALossDuringARebuildIsLeftToIt) {
  tree_.file("a");
  main().await(actor().startMonitoring(config_));
  const auto raw = this->raw();
  raw.exec("BEGIN IMMEDIATE");  // the rebuild waits for this
  const auto rebuild = indexer_->spawn([this] { return actor().rebuildIndex(config_); });
  main().runUntil([this] { return status().state == IndexStatus::State::indexing(); });
  deliverLoss();
  main().runUntil([&] { return !indexer_->log().empty(); });
  raw.exec("ROLLBACK");
  main().await(rebuild.wait());
  EXPECT_THAT(indexer_->log(),
              ElementsAre("[FSEvents] Full rescan requested while indexing; current rebuild will "
                          "refresh the index."));
}

TEST_F(StreamReactionsTest, ALossAfterARebuildIsNotTakenForOneDuringIt) {
  tree_.file("a");
  // Before anybody who waits for the rebuild is told of its end.
  streams_.first = {{.path = tree_.path(), .flags = kFSEventStreamEventFlagKernelDropped}};
  streams_.onStart = [&] { tree_.file("missed"); };
  main().await(actor().rebuildIndex(config_));
  waitForRows(2);
  EXPECT_THAT(indexer_->log(), ElementsAre(HasSubstr("Triggering automatic full rebuild")));
}

TEST_F(StreamReactionsTest, AnUpdateThatFailsIsLoggedAndStoresNothing) {
  const auto gone = tree_.file("gone");
  indexer_->rebuild(config_);
  main().await(actor().settled());
  const auto raw = this->raw();
  raw.exec("ALTER TABLE files_fts_idx RENAME TO elsewhere");
  std::filesystem::remove(gone);
  streams_.deliver(
      {{.path = gone, .flags = kFSEventStreamEventFlagItemRemoved, .identifier = 1},
       {.path = tree_.file("new"), .flags = kFSEventStreamEventFlagItemCreated, .identifier = 2}});
  main().runUntil([&] { return !indexer_->log().empty(); });
  EXPECT_THAT(indexer_->log(), ElementsAre(HasSubstr("[FSEvents] Incremental update error: ")));
  EXPECT_EQ(test::indexed(*indexer_).begin()->first, gone);
  raw.exec("ALTER TABLE elsewhere RENAME TO files_fts_idx");
  streams_.deliver(tree_ / "new", kFSEventStreamEventFlagItemCreated);
  waitForRows(2);
}

TEST_F(StreamReactionsTest, StoppingEndsTheStreamAndNothingElse) {
  indexer_->rebuild(config_);
  main().await(actor().stopMonitoring());
  EXPECT_FALSE(streams_.isRunning());
  tree_.file("a");
  EXPECT_EQ(indexer_->rebuild(config_).totalFiles, 1);
  EXPECT_TRUE(streams_.isRunning());
}

TEST_F(StreamReactionsTest, AStreamThatCannotBeHadFailsNothing) {
  tree_.file("a");
  streams_.fails = true;
  const auto status = indexer_->rebuild(config_);
  EXPECT_EQ(status.state, IndexStatus::State::idle());
  EXPECT_EQ(status.totalFiles, 1);
  EXPECT_TRUE(status.lastIndexDate);
}

}  // namespace
}  // namespace zelnor
