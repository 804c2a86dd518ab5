#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include <asio/post.hpp>
#include <gtest/gtest.h>

#include "tasks/Clock.h"
#include "tasks/MainQueue.h"
#include "tasks/Task.h"
#include "tasks/ThreadPool.h"

namespace zelnor::tasks {
namespace {

/// An event loop as small as can be: it waits to be woken, then drains.
class Loop {
 public:
  MainQueue queue{[this] {
    const std::scoped_lock lock(mutex_);
    woken_ = true;
    wakeUp_.notify_one();
  }};

  void runUntil(const std::atomic<bool>& done) {
    while (!done) {
      {
        std::unique_lock lock(mutex_);
        ASSERT_TRUE(wakeUp_.wait_for(lock, std::chrono::seconds(30), [&] { return woken_; }));
        woken_ = false;
      }
      queue.drain();
    }
  }

 private:
  std::mutex mutex_;
  std::condition_variable wakeUp_;
  bool woken_ = false;
};

TEST(MainQueue, RunsWhatAllThreadsPostInEachThreadsOrder) {
  constexpr int kPosts = 3000;
  Loop loop;
  std::vector<int> seen[2];
  std::atomic<bool> done = false;
  {
    std::vector<std::jthread> threads;
    for (auto& mine : seen) {
      threads.emplace_back([&] {
        for (int i = 0; i < kPosts; ++i) {
          asio::post(loop.queue.executor(), [&, i] {
            mine.push_back(i);
            done = seen[0].size() + seen[1].size() == 2 * kPosts;
          });
        }
      });
    }
    loop.runUntil(done);
  }
  for (const auto& mine : seen) {
    ASSERT_EQ(mine.size(), static_cast<std::size_t>(kPosts));
    EXPECT_TRUE(std::ranges::is_sorted(mine));
  }
}

TEST(MainQueue, LeavesWhatWorkPostsToTheNextTurn) {
  int wakeUps = 0;
  int runs = 0;
  MainQueue queue([&] { ++wakeUps; });
  const auto executor = queue.executor();
  asio::post(executor, [&] {
    ++runs;
    asio::post(executor, [&] { ++runs; });
  });
  EXPECT_EQ(wakeUps, 1);
  queue.drain();
  EXPECT_EQ(runs, 1);
  EXPECT_GE(wakeUps, 2);
  queue.drain();
  EXPECT_EQ(runs, 2);
}

TEST(MainQueue, AnItemThatThrowsDoesNotTakeTheOthersWithIt) {
  int runs = 0;
  MainQueue queue([] {});
  asio::post(queue.executor(), [] { throw std::runtime_error("x"); });
  asio::post(queue.executor(), [&] { ++runs; });
  EXPECT_THROW(queue.drain(), std::runtime_error);
  queue.drain();
  EXPECT_EQ(runs, 1);
}

TEST(MainQueue, DropsWaitingWorkWhenItGoesAway) {
  const auto held = std::make_shared<int>(1);
  {
    MainQueue queue([] {});
    asio::post(queue.executor(), [held] {});
    EXPECT_EQ(held.use_count(), 2);
  }
  EXPECT_EQ(held.use_count(), 1);
}

TEST(MainQueue, CarriesCoroutinesThatWaitOnAnotherPool) {
  ThreadPool pool(2);
  SteadyClock clock(pool.executor());
  Loop loop;
  std::atomic<bool> done = false;
  const auto here = std::this_thread::get_id();
  const auto task = Task::spawn(loop.queue.executor(), [&](std::stop_token stop) -> Async<void> {
    const auto start = clock.now();
    EXPECT_TRUE(co_await clock.sleep(std::chrono::milliseconds(5), stop));
    EXPECT_GE(clock.now() - start, std::chrono::milliseconds(5));
    EXPECT_EQ(std::this_thread::get_id(), here);
    done = true;
  });
  loop.runUntil(done);
}

}  // namespace
}  // namespace zelnor::tasks
