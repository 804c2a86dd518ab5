#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tasks/Actor.h"
#include "tasks/Task.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"

namespace zelnor::tasks {
namespace {

/// Keeps its thread until it is released.
class Blocker : public Actor {
 public:
  explicit Blocker(const Executor& pool) : Actor(pool) {}

  Async<void> block() {
    co_await onActor([&] {
      isBlocked_ = true;
      isReleased_.wait(false);
    });
  }
  [[nodiscard]] bool isBlocked() const { return isBlocked_; }
  void release() {
    isReleased_ = true;
    isReleased_.notify_all();
  }

 private:
  std::atomic<bool> isBlocked_ = false;
  std::atomic<bool> isReleased_ = false;
};

/// Counts without any lock: only right, and only silent under the thread sanitizer, if its steps
/// never overlap.
class Counter : public Actor {
 public:
  explicit Counter(const Executor& pool) : Actor(pool) {}

  Async<int> add(int amount) {
    co_return co_await onActor([&] { return total_ += amount; });
  }
  /// Reads, waits at an await, then writes: two of these may interleave.
  Async<void> addSlowly(Executor elsewhere) {
    co_await onActor([&]() -> Async<void> {
      const int before = total_;
      co_await asio::co_spawn(elsewhere, []() -> Async<void> { co_return; }, asio::use_awaitable);
      total_ = before + 1;
    });
  }
  Async<void> await(Blocker& blocker) {
    co_await onActor([&] { return blocker.block(); });
  }
  Async<void> fail() {
    co_await onActor([] { throw std::runtime_error("refused"); });
  }
  Async<std::thread::id> thread() {
    co_return co_await onActor([] { return std::this_thread::get_id(); });
  }

 private:
  int total_ = 0;
};

TEST(Actor, RunsOneStepAtATimeWhoeverAwaits) {
  test::MainThread main;
  ThreadPool pool(4);
  Counter counter(pool.executor());
  std::vector<Task> tasks;
  for (int i = 0; i < 8; ++i) {
    tasks.push_back(Task::spawn(pool.executor(), [&](std::stop_token) -> Async<void> {
      for (int j = 0; j < 500; ++j) co_await counter.add(1);
    }));
  }
  for (const auto& task : tasks) main.await(task.wait());
  EXPECT_EQ(main.await(counter.add(0)), 4000);
}

TEST(Actor, IsFreeWhileItAwaitsAnother) {
  test::MainThread main;
  ThreadPool pool(2);
  Counter waiting(pool.executor());
  Blocker blocker(pool.executor());
  const auto task = Task::spawn(
      main.executor(), [&](std::stop_token) -> Async<void> { co_await waiting.await(blocker); });
  main.runUntil([&] { return blocker.isBlocked(); });
  EXPECT_EQ(main.await(waiting.add(1)), 1);
  blocker.release();
  main.await(task.wait());
}

TEST(Actor, InterleavesOnlyWhereAStepAwaits) {
  test::MainThread main;
  ThreadPool pool(4);
  Counter counter(pool.executor());
  for (int i = 0; i < 200; ++i) {
    main.await(counter.addSlowly(pool.executor()));
    main.await(counter.add(1));
  }
  EXPECT_EQ(main.await(counter.add(0)), 400);
}

TEST(Actor, WorksElsewhereAndResumesItsCallerWhereTheCallerWas) {
  test::MainThread main;
  ThreadPool pool(2);
  Counter counter(pool.executor());
  const auto here = std::this_thread::get_id();
  main.await([&]() -> Async<void> {
    EXPECT_NE(co_await counter.thread(), here);
    EXPECT_EQ(std::this_thread::get_id(), here);
    try {
      co_await counter.fail();
      ADD_FAILURE() << "no error";
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "refused");
    }
    EXPECT_EQ(std::this_thread::get_id(), here);
  }());
}

TEST(ThreadPool, PreparesEveryThreadBeforeItWorks) {
  static thread_local bool prepared = false;
  std::atomic<int> count = 0;
  test::MainThread main;
  {
    ThreadPool pool(3, [&] {
      prepared = true;
      ++count;
    });
    Counter counter(pool.executor());
    main.await(Task::spawn(pool.executor(), [](std::stop_token) -> Async<void> {
                 EXPECT_TRUE(prepared);
                 co_return;
               }).wait());
  }
  EXPECT_EQ(count, 3);
}

}  // namespace
}  // namespace zelnor::tasks
