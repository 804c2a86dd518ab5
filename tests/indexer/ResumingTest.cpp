#include <gtest/gtest.h>

#include "tests/support/FakeStreams.h"
#include "tests/support/IndependentWalk.h"
#include "tests/support/IndexContents.h"
#include "tests/support/IndexerFixture.h"
#include "tests/support/RawDatabase.h"

namespace zelnor {
namespace {

constexpr auto kAutomergeSetting = "SELECT v FROM files_fts_config WHERE k = 'automerge'";
constexpr auto kPieces = "SELECT count(DISTINCT segid) FROM files_fts_idx";

class ResumingTest : public testing::Test {
 protected:
  /// Two folders with 12,000 files each.
  static void SetUpTestSuite() {
    tree_ = std::make_unique<test::TemporaryFolder>();
    for (int i = 0; i < 24'000; ++i) {
      tree_->file((i % 2 == 0 ? "first/" : "second/") + std::to_string(i / 1000) + "/" +
                  std::to_string(i));
    }
  }
  static void TearDownTestSuite() { tree_.reset(); }

  static inline std::unique_ptr<test::TemporaryFolder> tree_;
  const test::TemporaryFolder data_;

  /// Leaves an index behind that holds the first batch or two of a rebuild.
  void breakOffARebuildOf(const IndexConfiguration& config) {
    test::Indexer indexer(data_.path());
    const auto rebuild = indexer.spawn([&] { return indexer.actor().rebuildIndex(config); });
    indexer.main().runUntil([&] { return indexer.actor().status().value().processedFiles > 0; });
    indexer.main().await(indexer.actor().shutDown());
    indexer.main().await(rebuild.wait());
    const auto rows = test::indexed(indexer).size();
    ASSERT_TRUE(rows > 0 && rows < 24'000) << rows;
  }
  [[nodiscard]] test::RawDatabase raw() const { return test::RawDatabase(data_ / "index.sqlite"); }
};

TEST_F(ResumingTest, ARebuildOfTheSameConfigurationKeepsWhatItHasWritten) {
  const auto config = test::configurationOf(tree_->path());
  breakOffARebuildOf(config);
  test::Indexer next(data_.path(), /*followsChanges=*/true);
  next.main().await(next.actor().resume(config));
  EXPECT_EQ(test::indexed(next), test::walkIndependently(tree_->path()));
  EXPECT_EQ(raw().integer("SELECT min(id) FROM files"), 1) << "the first batch was written again";
  EXPECT_FALSE(next.main().await(next.actor().sharedDatabase().unfinishedBulkLoad()));
}

TEST_F(ResumingTest, ARebuildOfAnotherConfigurationStartsAnew) {
  auto hidden = test::configurationOf(tree_->path());
  hidden.skipHiddenFiles = true;
  auto excluding = test::configurationOf(tree_->path());
  excluding.excludedPaths.push_back(*tree_ / "first");
  for (const auto& wanted : {test::configurationOf(*tree_ / "second"), hidden, excluding}) {
    breakOffARebuildOf(test::configurationOf(tree_->path()));
    test::Indexer next(data_.path(), /*followsChanges=*/true);
    next.main().await(next.actor().resume(wanted));
    EXPECT_GT(raw().integer("SELECT min(id) FROM files"), 1);
    EXPECT_EQ(test::indexed(next).size(), wanted == hidden      ? 24'050U
                                          : wanted == excluding ? 12'025U
                                                                : 12'024U);
  }
}

TEST_F(ResumingTest, MergingThatQuittingBrokeOffGoesOnInSteps) {
  const auto config = test::configurationOf(tree_->path());
  test::FakeStreams streams;
  {
    test::Indexer indexer(data_.path(), /*followsChanges=*/true, streams.factory());
    const auto locking = raw();
    streams.onStart = [&] { locking.exec("BEGIN IMMEDIATE"); };  // before merging begins
    indexer.rebuild(config);
    indexer.main().await(indexer.actor().shutDown());
  }
  const auto index = raw();
  ASSERT_GT(index.integer(kPieces), 4);
  test::Indexer next(data_.path(), /*followsChanges=*/true);
  EXPECT_EQ(index.integer(kAutomergeSetting), 0) << "the next write would merge everything at once";
  next.main().await(next.actor().resume(config));
  next.main().await(next.actor().settled());
  EXPECT_EQ(index.integer(kAutomergeSetting), 4);
  EXPECT_LT(index.integer(kPieces), 4);
}

}  // namespace
}  // namespace zelnor
