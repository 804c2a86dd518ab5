#pragma once

#include <algorithm>
#include <memory>
#include <mutex>
#include <stop_token>
#include <utility>
#include <vector>

#include "tasks/Clock.h"
#include "tasks/Completion.h"

namespace zelnor::test {

/// Time that stands still until the test moves it.
class ManualClock final : public tasks::Clock {
 public:
  [[nodiscard]] TimePoint now() const override {
    const std::scoped_lock lock(mutex_);
    return now_;
  }

  tasks::Async<bool> sleep(Duration duration, std::stop_token stop) override {
    const auto wakeUp = std::make_shared<tasks::Completion<bool>>();
    {
      const std::scoped_lock lock(mutex_);
      sleepers_.emplace_back(now_ + duration, wakeUp);
    }
    const std::stop_callback onStop(stop, [wakeUp] { wakeUp->set(false); });
    co_return co_await tasks::Completion<bool>::wait(wakeUp);
  }

  /// Moves time on and wakes those whose time has come.
  void advance(Duration duration) {
    std::vector<Sleeper> due;
    {
      const std::scoped_lock lock(mutex_);
      now_ += duration;
      const auto over = std::ranges::partition(
          sleepers_, [&](const Sleeper& sleeper) { return sleeper.first > now_; });
      due.assign(over.begin(), over.end());
      sleepers_.erase(over.begin(), over.end());
    }
    for (const auto& sleeper : due) sleeper.second->set(true);
  }

  /// How many wait for a time that has not come; cancelled ones no longer count.
  [[nodiscard]] std::size_t sleeping() const {
    const std::scoped_lock lock(mutex_);
    return static_cast<std::size_t>(
        std::count_if(sleepers_.begin(), sleepers_.end(),
                      [](const Sleeper& sleeper) { return !sleeper.second->isSet(); }));
  }

 private:
  using Sleeper = std::pair<TimePoint, std::shared_ptr<tasks::Completion<bool>>>;
  mutable std::mutex mutex_;
  TimePoint now_{};
  std::vector<Sleeper> sleepers_;
};

}  // namespace zelnor::test
