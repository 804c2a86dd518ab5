#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <stop_token>

namespace zelnor::platform {

/// Counts batches on their way from the change stream into the index, so that an `IndexView` can
/// wait for those that were delivered before it is asked. Batches are applied in the order in which
/// they are handed over. Thread-safe.
class HandoverGate {
 public:
  /// The stream delivered a batch that will be applied.
  void handOver() {
    const std::scoped_lock lock(mutex_);
    ++handedOver_;
  }

  /// The oldest batch that was not yet applied is now in the index, or was given up.
  void applied() {
    {
      const std::scoped_lock lock(mutex_);
      ++applied_;
    }
    changed_.notify_all();
  }

  /// Waits until everything that was handed over before the call is applied; answers whether it is
  /// (otherwise `stop` was requested).
  bool waitForHandedOver(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    return changed_.wait(lock, stop, [this, goal = handedOver_] { return applied_ >= goal; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::uint64_t handedOver_ = 0;
  std::uint64_t applied_ = 0;
};

}  // namespace zelnor::platform
