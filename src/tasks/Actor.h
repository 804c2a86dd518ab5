#pragma once

#include <type_traits>
#include <utility>

#include <asio/co_spawn.hpp>
#include <asio/strand.hpp>
#include <asio/use_awaitable.hpp>

#include "tasks/Async.h"

namespace zelnor::tasks {

/// Base of classes whose operations run one at a time, off the thread that awaits them.
///
/// Two awaits of one actor may interleave at their waiting points, never inside a step. An actor
/// must outlive the operations awaited on it.
class Actor {
 public:
  Actor(const Actor&) = delete;
  Actor& operator=(const Actor&) = delete;

 protected:
  explicit Actor(const Executor& pool) : strand_(asio::make_strand(pool)) {}
  ~Actor() = default;

  /// Runs `step()` on the actor and answers what it returns. `step` may be a plain function or a
  /// coroutine (returning `Async<T>`); it is kept until it has ended.
  template <class Step>
  auto onActor(Step step) const {
    using Result = std::invoke_result_t<Step&>;
    return run(std::move(step), static_cast<Result*>(nullptr));
  }

  /// The actor as an executor, to spawn tasks on.
  [[nodiscard]] Executor strand() const { return strand_; }

 private:
  template <class Step, class Result>
  Async<Result> run(Step step, Result* /*plain*/) const {
    co_return co_await asio::co_spawn(
        strand_, [&step]() -> Async<Result> { co_return step(); }, asio::use_awaitable);
  }
  template <class Step>
  Async<void> run(Step step, void* /*plain*/) const {
    co_await asio::co_spawn(
        strand_,
        [&step]() -> Async<void> {
          step();
          co_return;
        },
        asio::use_awaitable);
  }
  template <class Step, class T>
  Async<T> run(Step step, Async<T>* /*coroutine*/) const {
    co_return co_await asio::co_spawn(
        strand_, [&step]() -> Async<T> { return step(); }, asio::use_awaitable);
  }

  asio::strand<Executor> strand_;
};

}  // namespace zelnor::tasks
