#pragma once

#include <functional>
#include <memory>

#include "tasks/Async.h"

namespace zelnor::tasks {

/// The main thread as an executor: a queue of ours that any event loop can empty.
///
/// Anything may be posted from any thread; it runs when the main thread calls `drain()`. The event
/// loop is only woken, it never carries the work itself.
class MainQueue {
 public:
  /// `wake` is called, on any thread, when work arrives in an empty queue; it must lead to a call
  /// of `drain()` on the main thread. It must not call `drain()` itself.
  explicit MainQueue(std::function<void()> wake);
  /// Drops what still waits.
  ~MainQueue();
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  [[nodiscard]] Executor executor() const;

  /// Main thread only: runs what waits now, in order. Work that this work posts waits for the next
  /// call, so that the event loop keeps its turn.
  void drain();

 private:
  class Context;
  class QueueExecutor;
  std::unique_ptr<Context> context_;
};

}  // namespace zelnor::tasks
