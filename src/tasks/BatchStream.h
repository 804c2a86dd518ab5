#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "tasks/Completion.h"

namespace zelnor::tasks {

/// Hands batches from a producer that never waits to one consumer that awaits them.
///
/// At most `capacity` batches wait; when one more arrives the oldest is discarded, and counted.
/// Thread-safe.
template <class T>
class BatchStream {
 public:
  using Batch = std::vector<T>;

  explicit BatchStream(std::size_t capacity) : capacity_(capacity) {}

  /// Adds a batch; never waits. Nothing may follow `finish()`.
  void push(Batch batch) {
    const std::scoped_lock lock(mutex_);
    waiting_.push_back(std::move(batch));
    if (waiting_.size() > capacity_) {
      waiting_.pop_front();
      ++discarded_;
    }
    wake();
  }

  /// No batch follows. The consumer still receives those that wait.
  void finish() {
    const std::scoped_lock lock(mutex_);
    finished_ = true;
    wake();
  }

  /// The next batch in order, or nothing when the stream has ended.
  Async<std::optional<Batch>> next() {
    for (;;) {
      std::shared_ptr<Completion<bool>> arrival;
      {
        const std::scoped_lock lock(mutex_);
        if (!waiting_.empty()) {
          std::optional<Batch> batch(std::move(waiting_.front()));
          waiting_.pop_front();
          co_return batch;
        }
        if (finished_) co_return std::nullopt;
        arrival_ = arrival = std::make_shared<Completion<bool>>();
      }
      co_await Completion<bool>::wait(arrival);
    }
  }

  /// How many batches were discarded so far because nobody took them in time.
  [[nodiscard]] std::uint64_t discarded() const {
    const std::scoped_lock lock(mutex_);
    return discarded_;
  }

 private:
  /// Only posts, so it may be called under the lock.
  void wake() {
    if (const auto arrival = std::exchange(arrival_, nullptr)) arrival->set(true);
  }

  const std::size_t capacity_;
  mutable std::mutex mutex_;
  std::deque<Batch> waiting_;
  std::uint64_t discarded_ = 0;
  bool finished_ = false;
  std::shared_ptr<Completion<bool>> arrival_;
};

}  // namespace zelnor::tasks
