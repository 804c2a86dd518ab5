#include <chrono>
#include <cmath>
#include <filesystem>
#include <future>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "tests/indexer/FakeStreamTest.h"
#include "tests/support/IndependentWalk.h"
#include "tests/support/IndexContents.h"

namespace zelnor {
namespace {

using platform::kFSEventStreamEventFlagItemCreated;
using std::chrono::steady_clock;

class ClosingTest : public test::FakeStreamTest {
 protected:
  void waitForFirstBatch() {
    main().runUntil([&] { return status().processedFiles > 0; });
  }
  /// Whatever an actor that is shut down still has to say.
  void settle() { main().runReady(); }
};

TEST_F(ClosingTest, WhatTheStreamDeliversAsItIsStoppedIsNotAppliedAfterwards) {
  main().await(actor().startMonitoring(config_));
  streams_.last = {
      {.path = tree_.file("late"), .flags = kFSEventStreamEventFlagItemCreated, .identifier = 7}};
  main().await(actor().shutDown());
  EXPECT_EQ(indexer_->defaults().get<std::uint64_t>("FSEventsLastEventID"), 7U) << "was delivered";
  for (int i = 0; i < 20; ++i) EXPECT_TRUE(test::indexed(*indexer_).empty());
}

TEST_F(ClosingTest, ARebuildThatIsBrokenOffAtItsEndFollowsNothing) {
  makeFiles(100);
  // Somebody who reads keeps the log from being written back, which is the end of a rebuild.
  const auto reader = raw();
  reader.exec("BEGIN");
  ASSERT_EQ(reader.integer("SELECT count(*) FROM files"), 0);
  const auto rebuild = indexer_->spawn([this] { return actor().rebuildIndex(config_); });
  waitForFirstBatch();
  const auto other = raw();
  main().runUntil([&] { return other.integer("PRAGMA user_version") == 0; });
  const auto begin = steady_clock::now();
  main().await(actor().shutDown());
  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(2));
  main().await(rebuild.wait());
  settle();
  EXPECT_TRUE(streams_.started().empty());
  EXPECT_EQ(status().state, IndexStatus::State::idle());
  EXPECT_FALSE(status().lastIndexDate);
}

TEST_F(ClosingTest, ALaunchThatIsBrokenOffDoesNotGoOn) {
  makeFiles(100);
  const auto launch = indexer_->spawn([this] { return actor().resume(config_); });
  const auto closing = indexer_->spawn([this] { return actor().shutDown(); });
  main().await(closing.wait());
  const auto rows = test::indexed(*indexer_);
  main().await(launch.wait());
  settle();
  EXPECT_EQ(test::indexed(*indexer_), rows);
  EXPECT_FALSE(streams_.isRunning());
}

TEST_F(ClosingTest, NothingIsBegunAfterwards) {
  makeFiles(10);
  main().await(actor().startMonitoring(config_));
  main().await(actor().shutDown());
  main().await(actor().rebuildIndex(config_));
  main().await(actor().resume(config_));
  main().await(actor().startMonitoring(config_));
  main().await(actor().scheduleAutomaticRebuild("too late"));
  main().await(
      actor().handleFSEvents({{tree_ / "0/0", FSEventItem::EventType::created, /*flags=*/0}}));
  settle();
  EXPECT_TRUE(test::indexed(*indexer_).empty());
  EXPECT_TRUE(indexer_->log().empty());
  EXPECT_EQ(streams_.started().size(), 1U);
}

TEST_F(ClosingTest, WhatWasAskedForJustBeforeIsNotBegun) {
  std::promise<void> isStarting;
  std::promise<void> mayStart;
  streams_.onStart = [&, isFirst = true]() mutable {
    if (!std::exchange(isFirst, false)) return;
    isStarting.set_value();
    mayStart.get_future().wait();
  };
  const auto first = indexer_->spawn([this] { return actor().startMonitoring(config_); });
  main().runReady();
  isStarting.get_future().wait();  // the actor is busy
  const auto second = indexer_->spawn([this] { return actor().startMonitoring(config_); });
  const auto closing = indexer_->spawn([this] { return actor().shutDown(); });
  main().runReady();
  mayStart.set_value();
  for (const auto& task : {first, second, closing}) main().await(task.wait());
  EXPECT_EQ(streams_.started().size(), 1U);
  EXPECT_FALSE(streams_.isRunning());
}

TEST_F(ClosingTest, AnAutomaticRebuildIsBrokenOffLikeAnyOther) {
  makeFiles(100);
  main().await(actor().startMonitoring(config_));
  const auto reader = raw();  // keeps it from ending
  reader.exec("BEGIN");
  ASSERT_EQ(reader.integer("SELECT count(*) FROM files"), 0);
  streams_.deliver(tree_.path(), platform::kFSEventStreamEventFlagKernelDropped);
  waitForFirstBatch();
  const auto begin = steady_clock::now();
  main().await(actor().shutDown());
  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(2));
  settle();
  EXPECT_EQ(streams_.started().size(), 1U);
  EXPECT_EQ(status().state, IndexStatus::State::idle());
  EXPECT_FALSE(status().lastIndexDate);
  EXPECT_EQ(indexer_->log().size(), 1U) << "it has not failed";
}

TEST_F(ClosingTest, ARebuildThatIsReplacedAfterItsLastBatchFollowsNothing) {
  makeFiles(100);
  const test::TemporaryFolder other;
  other.file("only");
  const auto reader = raw();
  reader.exec("BEGIN");
  ASSERT_EQ(reader.integer("SELECT count(*) FROM files"), 0);
  const auto older = indexer_->spawn([this] { return actor().rebuildIndex(config_); });
  waitForFirstBatch();
  const auto looking = raw();
  main().runUntil([&] { return looking.integer("PRAGMA user_version") == 0; });
  const auto newer =
      indexer_->spawn([&] { return actor().rebuildIndex(test::configurationOf(other.path())); });
  main().runReady();
  reader.exec("COMMIT");
  main().await(older.wait());
  main().await(newer.wait());
  EXPECT_EQ(streams_.started(), (std::vector<std::vector<std::string>>{{other.path()}}));
  EXPECT_EQ(test::indexed(*indexer_).size(), 1U);
}

TEST_F(ClosingTest, ALoadNeverMeetsTheMergingOfTheOneBefore) {
  makeFiles(12'000);
  for (int round = 0; round < 3; ++round) {
    const auto older = indexer_->spawn([this] { return actor().rebuildIndex(config_); });
    const auto newer = indexer_->spawn([this] { return actor().rebuildIndex(config_); });
    main().await(older.wait());
    waitForFirstBatch();
    const auto raw = this->raw();
    main().runUntil([&] {
      const bool isLoading = raw.integer("PRAGMA user_version") != 0;
      const auto automerge = "SELECT v FROM files_fts_config WHERE k = 'automerge'";
      EXPECT_TRUE(!isLoading || raw.integer(automerge) == 0);
      return newer.isDone();
    });
    main().await(newer.wait());
  }
}

/// What may be under way when the program ends.
enum class Work : std::uint8_t { launch, rebuild, merging, burst };

class Quitting {
 public:
  explicit Quitting(unsigned seed) : random_(seed) {
    for (int i = 0; i < 3'600; ++i) tree_.file(std::to_string(i / 300) + "/" + longName());
  }

  void round(Work work) {
    test::Indexer indexer(data_.path(), /*followsChanges=*/true);
    auto& actor = indexer.actor();
    const auto launch = indexer.spawn([&] { return actor.resume(config_); });
    if (work != Work::launch) indexer.main().await(launch.wait());
    tasks::Task rebuild;
    if (work == Work::rebuild || work == Work::merging) {
      rebuild = indexer.spawn([&] { return actor.rebuildIndex(config_); });
    }
    if (work == Work::merging) indexer.main().await(rebuild.wait());
    if (work == Work::burst) renameMuch(indexer);
    waitAMoment(indexer);
    const auto begin = steady_clock::now();
    indexer.main().await(actor.shutDown());
    longest_ = std::max(longest_, steady_clock::now() - begin);
    // The actor goes away at once; what waited for it may be told later.
  }

  [[nodiscard]] steady_clock::duration longest() const { return longest_; }
  /// Whether the index is sound and the next launch brings it up to date.
  void expectTheNextLaunchMendsEverything() {
    EXPECT_TRUE(test::RawDatabase(data_ / "index.sqlite").isSound());
    test::Indexer indexer(data_.path(), /*followsChanges=*/true);
    indexer.main().await(indexer.actor().resume(config_));
    const auto onDisk = test::walkIndependently(tree_.path());
    indexer.main().runUntil([&] { return test::indexed(indexer) == onDisk; });
  }

 private:
  /// Long enough for the full-text table to be in pieces that are worth merging.
  std::string longName() {
    std::string name(120, ' ');
    for (auto& letter : name) letter = static_cast<char>('a' + random_() % 26);
    return name;
  }
  /// Returns when much of it has just been delivered.
  void renameMuch(test::Indexer& indexer) {
    const auto delivered = [&] {
      return indexer.defaults().get<std::uint64_t>("FSEventsLastEventID").value_or(0);
    };
    // What follows soon after a delivery comes with the next.
    tree_.file("change");
    indexer.main().runUntil([&] { return delivered() > 0; });
    const auto before = delivered();
    for (int number = 0; number < 10; ++number) {
      const auto folder = tree_ / std::to_string(number);
      const auto aside = folder + "-aside";
      const bool isThere = std::filesystem::exists(folder);
      std::filesystem::rename(isThere ? folder : aside, isThere ? aside : folder);
    }
    indexer.main().runUntil([&] { return delivered() > before + 2'000; });
  }
  /// Of any order of magnitude between a tenth of a millisecond and some hundred.
  void waitAMoment(test::Indexer& indexer) {
    const auto times = std::exp2(std::uniform_real_distribution(0.0, 11.5)(random_));
    const auto end =
        steady_clock::now() + std::chrono::microseconds(static_cast<std::int64_t>(100 * times));
    while (steady_clock::now() < end) {
      indexer.main().runReady();
      std::this_thread::yield();
    }
  }

  std::mt19937 random_;
  const test::TemporaryFolder tree_;
  const test::TemporaryFolder data_;
  const IndexConfiguration config_ = test::configurationOf(tree_.path());
  steady_clock::duration longest_{};
};

// Far less as a rule, but the machine may be busy, and a sanitizer makes everything slow.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::chrono::seconds kQuick{15};
#else
constexpr std::chrono::seconds kQuick{2};
#endif

/// By its seed.
class QuittingTest : public testing::TestWithParam<unsigned> {};

TEST_P(QuittingTest, AtAnyMomentIsQuickAndLosesNothing) {
  std::mt19937 random(GetParam());
  Quitting quitting(GetParam());
  for (int i = 0; i < 25; ++i) {
    SCOPED_TRACE("round " + std::to_string(i));
    quitting.round(static_cast<Work>(random() % 4));
    if (i % 10 == 4) quitting.expectTheNextLaunchMendsEverything();
  }
  EXPECT_LT(quitting.longest(), kQuick);
}

INSTANTIATE_TEST_SUITE_P(Seeds, QuittingTest, testing::Values(31, 32, 33, 34));

}  // namespace
}  // namespace zelnor
