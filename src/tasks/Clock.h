#pragma once

#include <chrono>
#include <stop_token>

#include "tasks/Async.h"

namespace zelnor::tasks {

/// Monotonic time, as a parameter: whoever waits is given a clock, so that tests move time
/// themselves.
class Clock {
 public:
  using Duration = std::chrono::steady_clock::duration;
  using TimePoint = std::chrono::steady_clock::time_point;

  virtual ~Clock() = default;

  [[nodiscard]] virtual TimePoint now() const = 0;

  /// Waits for `duration`, or less when `stop` is requested meanwhile. Answers whether the whole
  /// time has passed.
  virtual Async<bool> sleep(Duration duration, std::stop_token stop) = 0;
};

/// The real clock. Its timers live on `executor`, which must be backed by an `asio::io_context` (a
/// ThreadPool is).
class SteadyClock final : public Clock {
 public:
  explicit SteadyClock(Executor executor) : executor_(std::move(executor)) {}

  [[nodiscard]] TimePoint now() const override { return std::chrono::steady_clock::now(); }
  Async<bool> sleep(Duration duration, std::stop_token stop) override;

 private:
  Executor executor_;
};

}  // namespace zelnor::tasks
