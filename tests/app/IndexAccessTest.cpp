#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "app/IndexAccess.h"
#include "platform/FileLock.h"
#include "store/DatabaseManager.h"
#include "tasks/Task.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/MemoryDefaultsStore.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::app {
namespace {

class IndexAccessTest : public testing::Test {
 protected:
  ~IndexAccessTest() override { main_.await(access_.close()); }

  /// Another process, as far as the lock goes.
  void writeElsewhere() { elsewhere_ = platform::FileLock::tryAcquire(data_ / "index.lock"); }
  tasks::Task start(tasks::Async<void> (IndexAccess::*operation)(std::stop_token)) {
    return tasks::Task::spawn(main_.executor(), [this, operation](std::stop_token stop) {
      return (access_.*operation)(std::move(stop));
    });
  }
  /// Has `open` look at the index once more; true if it waits for it still.
  bool stillWaits() {
    clock_.advance(IndexAccess::kRetryPause);
    main_.runUntil([&] { return clock_.sleeping() == 1 || access_.isOpen(); });
    return !access_.isOpen();
  }
  void makeIndex() { const DatabaseManager manager(data_.path(), pool_.executor()); }

  const test::TemporaryFolder data_;
  test::MainThread main_;
  test::ManualClock clock_;
  test::MemoryDefaultsStore defaults_;
  tasks::ThreadPool pool_{3};
  IndexAccess access_{{.dataFolder = data_.path(),
                       .background = pool_.executor(),
                       .main = main_.executor(),
                       .defaults = defaults_},
                      pool_.executor(),
                      clock_};
  std::optional<platform::FileLock> elsewhere_;
};

TEST_F(IndexAccessTest, MakesTheIndexAndIsTheOnlyOneToWriteUntilItIsClosed) {
  main_.await(access_.open({}));
  EXPECT_TRUE(access_.isOpen());
  ASSERT_NE(access_.indexer(), nullptr);
  EXPECT_EQ(main_.await(access_.engine().totalIndexedCount()), 0);
  writeElsewhere();
  EXPECT_FALSE(elsewhere_);
  main_.await(access_.close());
  EXPECT_FALSE(access_.isOpen());
  writeElsewhere();
  EXPECT_TRUE(elsewhere_);
}

TEST_F(IndexAccessTest, WaitsForAnIndexThatAnotherProcessIsJustMakingAndTakesOver) {
  writeElsewhere();
  const auto opening = start(&IndexAccess::open);
  ASSERT_TRUE(stillWaits()) << "there is no file";
  data_.file("index.sqlite");
  ASSERT_TRUE(stillWaits()) << "there is no table";
  makeIndex();
  ASSERT_FALSE(stillWaits());
  main_.await(opening.wait());
  EXPECT_EQ(access_.indexer(), nullptr);
  EXPECT_EQ(main_.await(access_.engine().totalIndexedCount()), 0);

  const auto takingOver = start(&IndexAccess::takeOver);
  main_.runReady();
  EXPECT_FALSE(takingOver.isDone());
  elsewhere_.reset();
  main_.await(takingOver.wait());
  EXPECT_NE(access_.indexer(), nullptr);
  writeElsewhere();
  EXPECT_FALSE(elsewhere_);
}

TEST_F(IndexAccessTest, MakesTheIndexItselfIfTheOtherProcessEndsWithoutOne) {
  writeElsewhere();
  const auto opening = start(&IndexAccess::open);
  ASSERT_TRUE(stillWaits());
  elsewhere_.reset();
  EXPECT_FALSE(stillWaits());
  main_.await(opening.wait());
  EXPECT_NE(access_.indexer(), nullptr);
}

TEST_F(IndexAccessTest, WhatCannotBeOpenedByTheOneThatWritesIsAnError) {
  data_.file("index.sqlite", std::string(5000, 'x'));
  EXPECT_THROW(main_.await(access_.open({})), DatabaseError);
  EXPECT_FALSE(access_.isOpen());
}

TEST_F(IndexAccessTest, WaitingEndsWhenItIsStopped) {
  writeElsewhere();
  const auto opening = start(&IndexAccess::open);
  ASSERT_TRUE(stillWaits());
  opening.cancel();
  main_.await(opening.wait());
  EXPECT_FALSE(access_.isOpen());

  makeIndex();
  main_.await(access_.open({}));
  const auto takingOver = start(&IndexAccess::takeOver);
  main_.runReady();
  takingOver.cancel();
  main_.await(takingOver.wait());
  EXPECT_EQ(access_.indexer(), nullptr);
}

}  // namespace
}  // namespace zelnor::app
