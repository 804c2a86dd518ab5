#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "indexer/IndexServices.h"
#include "indexer/IndexViewModel.h"
#include "store/DatabaseError.h"
#include "tests/support/FakeIndexMaintainer.h"
#include "tests/support/MainThread.h"
#include "tests/support/MemoryDefaultsStore.h"

namespace zelnor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using PathList = IndexViewModel::PathList;

class IndexViewModelTest : public testing::Test {
 protected:
  ~IndexViewModelTest() override { settle(); }

  void settle() { main_.runReady(); }
  [[nodiscard]] std::optional<IndexConfiguration> stored() const {
    return IndexConfiguration::saved(defaults_);
  }
  /// The configuration with another switch thrown.
  [[nodiscard]] IndexConfiguration edited() const {
    auto configuration = model_->configuration();
    configuration.skipHiddenFiles = !configuration.skipHiddenFiles;
    return configuration;
  }

  test::MemoryDefaultsStore defaults_;
  test::FakeIndexMaintainer maintainer_;
  test::MainThread main_;
  IndexServices services_{.maintainer = maintainer_,
                          .defaults = defaults_,
                          .homeFolder = "/home/me",
                          .main = main_.executor(),
                          .background = main_.executor()};
  std::unique_ptr<IndexViewModel> model_ = std::make_unique<IndexViewModel>(services_);
};

TEST_F(IndexViewModelTest, ARebuildIsUnderWayUntilItEndsAndThenStoresTheConfiguration) {
  int changes = 0;
  QObject::connect(model_.get(), &IndexViewModel::isRebuildingIndexChanged, [&] { ++changes; });
  model_->setConfiguration(edited());
  model_->startRebuild();
  EXPECT_TRUE(model_->isRebuildingIndex());
  model_->startRebuild();
  settle();
  model_->startRebuild();
  settle();
  EXPECT_THAT(maintainer_.rebuilds, ElementsAre(model_->configuration()));
  EXPECT_EQ(stored(), std::nullopt);
  EXPECT_EQ(changes, 1);

  maintainer_.finish();
  settle();
  EXPECT_FALSE(model_->isRebuildingIndex());
  EXPECT_EQ(model_->rebuildError(), std::nullopt);
  EXPECT_EQ(stored(), model_->configuration());
  EXPECT_EQ(changes, 2);
  EXPECT_THAT(maintainer_.followed, IsEmpty());
}

TEST_F(IndexViewModelTest, EditsWaitForARebuildThatSucceedsAndBeganAfterThem) {
  const auto rebuild = [this](const std::function<void()>& end) {
    model_->startRebuild();
    settle();
    end();
    settle();
  };
  int changes = 0;
  QObject::connect(model_.get(), &IndexViewModel::hasUnappliedEditsChanged, [&] { ++changes; });
  model_->removePath(PathList::included, "/nowhere");
  EXPECT_FALSE(model_->hasUnappliedEdits());

  model_->removePath(PathList::included, "/home/me");
  EXPECT_TRUE(model_->hasUnappliedEdits());
  model_->addPath(PathList::included,
                  "/home/me");  // its rows are there; those of others may not be
  EXPECT_TRUE(model_->hasUnappliedEdits());
  EXPECT_EQ(changes, 1);
  rebuild([this] { maintainer_.fail(DatabaseError::execFailed("COMMIT", "full", /*code=*/13)); });
  EXPECT_TRUE(model_->hasUnappliedEdits());
  rebuild([this] {
    model_->setConfiguration(edited());
    maintainer_.finish();
  });
  EXPECT_TRUE(model_->hasUnappliedEdits());
  rebuild([this] { maintainer_.finish(); });
  EXPECT_FALSE(model_->hasUnappliedEdits());
  EXPECT_EQ(changes, 2);
}

TEST_F(IndexViewModelTest, AFailedRebuildStoresNothingAndIsToldUntilTheNextStarts) {
  const auto full = DatabaseError::execFailed("COMMIT", "database or disk is full", /*code=*/13);
  int changes = 0;
  QObject::connect(model_.get(), &IndexViewModel::rebuildErrorChanged, [&] { ++changes; });
  model_->startRebuild();
  settle();
  maintainer_.fail(full);
  settle();
  EXPECT_FALSE(model_->isRebuildingIndex());
  EXPECT_EQ(model_->rebuildError(), full.what());
  EXPECT_EQ(stored(), std::nullopt);

  model_->startRebuild();
  EXPECT_EQ(model_->rebuildError(), std::nullopt);
  EXPECT_EQ(changes, 2);
  settle();
  maintainer_.finish();
  settle();
  EXPECT_EQ(stored(), model_->configuration());
}

TEST_F(IndexViewModelTest, AnAddedFolderIsStoredAndFollowedAtOnce) {
  model_->addPath(PathList::included, "/data");
  model_->addPath(PathList::included, "/data");
  EXPECT_THAT(model_->configuration().includedPaths, ElementsAre("/home/me", "/data", "/data"));
  model_->addPath(PathList::excluded, "/data/\xff");
  EXPECT_EQ(model_->configuration().excludedPaths.back(), "/data/\xff");
  settle();
  EXPECT_EQ(stored(), model_->configuration());
  ASSERT_EQ(maintainer_.followed.size(), 3U);
  EXPECT_EQ(maintainer_.followed.back(), model_->configuration());
  EXPECT_THAT(maintainer_.rebuilds, IsEmpty());
}

TEST_F(IndexViewModelTest, RemovalsAndSwitchesWaitForTheNextAdditionOrRebuild) {
  for (const auto* path : {"/data", "/more", "/data"}) model_->addPath(PathList::included, path);
  settle();
  const auto before = stored();
  const auto followed = maintainer_.followed.size();
  int changes = 0;
  QObject::connect(model_.get(), &IndexViewModel::configurationChanged, [&] { ++changes; });

  model_->removePath(PathList::included, "/data");
  model_->removePath(PathList::excluded, "/dev");
  model_->removePath(PathList::excluded, "/not/there");
  model_->setConfiguration(edited());
  settle();
  EXPECT_THAT(model_->configuration().includedPaths, ElementsAre("/home/me", "/more"));
  EXPECT_EQ(model_->configuration().excludedPaths.size(), 5U);
  EXPECT_EQ(changes, 3);
  EXPECT_EQ(stored(), before);
  EXPECT_EQ(maintainer_.followed.size(), followed);

  model_->saveConfiguration();
  settle();
  EXPECT_EQ(stored(), model_->configuration());
  model_ = std::make_unique<IndexViewModel>(services_);
  EXPECT_EQ(stored(), model_->configuration());
}

TEST_F(IndexViewModelTest, WhatEndsAfterTheViewModelHasGoneOrStoppedChangesNothing) {
  model_->startRebuild();
  settle();
  bool stopped = false;
  model_->stop([&] { stopped = true; });
  settle();
  EXPECT_FALSE(stopped);
  maintainer_.finish();
  settle();
  EXPECT_TRUE(stopped);
  EXPECT_EQ(stored(), std::nullopt);

  model_ = std::make_unique<IndexViewModel>(services_);
  model_->startRebuild();
  settle();
  model_.reset();
  maintainer_.finish();
  settle();
  EXPECT_EQ(stored(), std::nullopt);
}

}  // namespace
}  // namespace zelnor
