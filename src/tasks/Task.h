#pragma once

#include <functional>
#include <memory>
#include <stop_token>

#include "tasks/Async.h"

namespace zelnor::tasks {

/// A handle on work that was started and goes on by itself. Copies share the work; dropping every
/// copy lets it run on.
///
/// Cancelling only asks: the work looks at its stop token where it can stop.
class Task {
 public:
  /// No work; `operator bool` says false.
  Task() = default;

  /// Starts `body` on `executor`, never inside this call. The task owns `body`, and with it what
  /// the coroutine captured, until it has ended.
  static Task spawn(const Executor& executor, std::function<Async<void>(std::stop_token)> body);

  explicit operator bool() const { return state_ != nullptr; }
  void cancel() const;
  [[nodiscard]] bool isCancelled() const;
  [[nodiscard]] bool isDone() const;

  /// Returns when the work has ended, and throws what it threw. Work that was dropped unfinished,
  /// because its thread pool was destroyed, ends with `std::system_error` of
  /// `std::errc::operation_canceled`.
  [[nodiscard]] Async<void> wait() const;
  /// Returns when the work has ended, however it ended.
  [[nodiscard]] Async<void> ended() const;

  friend bool operator==(const Task&, const Task&) = default;

 private:
  struct State;
  static Async<void> waitFor(std::shared_ptr<State> state);
  static Async<void> waitForEnd(std::shared_ptr<State> state);

  std::shared_ptr<State> state_;
};

}  // namespace zelnor::tasks
