#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "tasks/Async.h"

namespace zelnor::tasks {

/// How many threads can run at a time on this machine; at least one.
std::size_t processorCount();

/// A fixed number of threads that run whatever is posted to `executor()`.
///
/// The program has two: one for what a user waits for, one for background work, whose threads lower
/// their own priority as they start. Destruction stops the pool: a function that runs is finished,
/// what waits is dropped, and the threads are joined. Owners of work on a pool must be gone, or
/// hold nothing of the work, by then.
class ThreadPool {
 public:
  /// Starts `threads` threads. `onThreadStart` runs first on each of them.
  explicit ThreadPool(std::size_t threads, const std::function<void()>& onThreadStart = {});
  ~ThreadPool();
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;

  [[nodiscard]] Executor executor() const;

 private:
  struct Threads;
  std::unique_ptr<Threads> threads_;
};

}  // namespace zelnor::tasks
