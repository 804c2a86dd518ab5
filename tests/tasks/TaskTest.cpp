#include <memory>
#include <stdexcept>
#include <system_error>

#include <gtest/gtest.h>

#include "tasks/Clock.h"
#include "tasks/Completion.h"
#include "tasks/Task.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/ManualClock.h"

namespace zelnor::tasks {
namespace {

class TaskTest : public testing::Test {
 protected:
  test::MainThread main_;
  ThreadPool pool_{2};
};

TEST_F(TaskTest, HandsItsErrorToEveryoneWhoWaits) {
  const auto task = Task::spawn(pool_.executor(), [](std::stop_token) -> Async<void> {
    throw std::runtime_error("broken");
    co_return;
  });
  EXPECT_THROW(main_.await(task.wait()), std::runtime_error);
  EXPECT_THROW(main_.await(task.wait()), std::runtime_error);
  EXPECT_TRUE(task.isDone());
  EXPECT_FALSE(task.isCancelled());
}

TEST_F(TaskTest, DoesNotStartInsideTheCallThatStartsIt) {
  bool started = false;
  const auto outer = Task::spawn(main_.executor(), [&](std::stop_token) -> Async<void> {
    const auto inner = Task::spawn(main_.executor(), [&](std::stop_token) -> Async<void> {
      started = true;
      co_return;
    });
    EXPECT_FALSE(started);
    co_await inner.wait();
  });
  main_.await(outer.wait());
  EXPECT_TRUE(started);
}

TEST_F(TaskTest, HasLetGoOfWhatItOwnsWhenItHasEnded) {
  for (const bool fails : {false, true}) {
    Task task;
    bool wasDone = true;
    const auto lookAtEnd = [&](const int* /*owned*/) { wasDone = task.isDone(); };
    task = Task::spawn(
        main_.executor(),
        [owned = std::shared_ptr<int>(nullptr, lookAtEnd), fails](std::stop_token) -> Async<void> {
          if (fails) throw std::runtime_error("broken");
          co_return;
        });
    main_.await(task.ended());
    EXPECT_FALSE(wasDone);
  }
}

TEST_F(TaskTest, CancellingWakesASleeperThatLearnsOfIt) {
  SteadyClock real(pool_.executor());
  test::ManualClock manual;
  for (Clock* clock : {static_cast<Clock*>(&real), static_cast<Clock*>(&manual)}) {
    bool slept = true;
    const auto task = Task::spawn(main_.executor(), [&](std::stop_token stop) -> Async<void> {
      slept = co_await clock->sleep(std::chrono::hours(1), stop);
    });
    main_.runReady();
    task.cancel();
    main_.await(task.wait());
    EXPECT_FALSE(slept);
    EXPECT_TRUE(task.isCancelled());
  }
}

TEST_F(TaskTest, AClockUnderControlWakesThoseWhoseTimeHasCome) {
  test::ManualClock clock;
  int woken = 0;
  std::vector<Task> tasks;
  for (const int seconds : {3, 1, 2}) {
    tasks.push_back(
        Task::spawn(main_.executor(), [&, seconds](std::stop_token stop) -> Async<void> {
          if (co_await clock.sleep(std::chrono::seconds(seconds), stop)) ++woken;
        }));
  }
  main_.runUntil([&] { return clock.sleeping() == 3; });
  clock.advance(std::chrono::seconds(2));
  main_.runUntil([&] { return woken == 2; });
  EXPECT_EQ(clock.sleeping(), 1U);
  clock.advance(std::chrono::seconds(1));
  main_.runUntil([&] { return woken == 3; });
}

TEST_F(TaskTest, WorkThatItsPoolDroppedEndsWithAnError) {
  Task task;
  {
    ThreadPool withoutThreads(0);
    task =
        Task::spawn(withoutThreads.executor(), [](std::stop_token) -> Async<void> { co_return; });
  }
  EXPECT_THROW(main_.await(task.wait()), std::system_error);
}

TEST_F(TaskTest, ACompletionIsSetOnceAndKeepsItsFirstValue) {
  const auto completion = std::make_shared<Completion<int>>();
  completion->set(1);
  completion->set(2);
  completion->fail(std::make_exception_ptr(std::runtime_error("late")));
  EXPECT_EQ(main_.await(Completion<int>::wait(completion)), 1);
}

TEST_F(TaskTest, ACompletionMeetsManyWaitersFromManyThreads) {
  for (int round = 0; round < 200; ++round) {
    const auto completion = std::make_shared<Completion<int>>();
    const auto setter = Task::spawn(pool_.executor(), [&](std::stop_token) -> Async<void> {
      completion->set(round);
      co_return;
    });
    const auto waiter = Task::spawn(pool_.executor(), [&](std::stop_token) -> Async<void> {
      EXPECT_EQ(co_await Completion<int>::wait(completion), round);
    });
    EXPECT_EQ(main_.await(Completion<int>::wait(completion)), round);
    main_.await(setter.wait());
    main_.await(waiter.wait());
  }
}

}  // namespace
}  // namespace zelnor::tasks
