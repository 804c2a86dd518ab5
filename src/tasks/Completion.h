#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include <asio/associated_executor.hpp>
#include <asio/async_result.hpp>
#include <asio/post.hpp>
#include <asio/use_awaitable.hpp>

#include "tasks/Async.h"

namespace zelnor::tasks {

/// An event that happens once, with a value: set on any thread, awaited by any number of coroutines
/// before or after. `T` must be copyable. Shared by those who set and those who wait.
template <class T>
class Completion {
 public:
  /// Ends the wait of everybody with `value`. Only the first of `set` and `fail` counts.
  void set(T value) {
    settle([&] { value_ = std::move(value); });
  }
  /// Ends the wait of everybody by throwing `error`.
  void fail(std::exception_ptr error) {
    settle([&] { error_ = std::move(error); });
  }
  [[nodiscard]] bool isSet() const {
    const std::scoped_lock lock(mutex_);
    return value_ || error_;
  }

  /// The value, once there is one. The caller keeps the completion alive, as a `shared_ptr`, while
  /// it waits.
  static Async<T> wait(std::shared_ptr<Completion> self) {
    co_await asio::async_initiate<const asio::use_awaitable_t<>&, void()>(
        [](auto handler, Completion* completion) {
          using Handler = decltype(handler);
          // std::function wants a copyable target, handlers only move.
          auto shared = std::make_shared<Handler>(std::move(handler));
          completion->whenSet([shared] {
            const auto executor = asio::get_associated_executor(*shared);
            asio::post(executor, [handler = std::move(*shared)]() mutable { handler(); });
          });
        },
        asio::use_awaitable, self.get());
    const auto& value = self->value_;
    if (!value) std::rethrow_exception(self->error_);
    co_return *value;
  }

 private:
  template <class Assign>
  void settle(Assign assign) {
    std::vector<std::function<void()>> waiting;
    {
      const std::scoped_lock lock(mutex_);
      if (value_ || error_) return;
      assign();
      waiting.swap(waiting_);
    }
    for (const auto& resume : waiting) resume();
  }
  void whenSet(std::function<void()> resume) {
    {
      const std::scoped_lock lock(mutex_);
      if (!value_ && !error_) {
        waiting_.push_back(std::move(resume));
        return;
      }
    }
    resume();
  }

  mutable std::mutex mutex_;
  std::optional<T> value_;
  std::exception_ptr error_;
  std::vector<std::function<void()>> waiting_;
};

}  // namespace zelnor::tasks
