#pragma once

#include <exception>
#include <type_traits>
#include <utility>

#include <asio/async_result.hpp>
#include <asio/co_spawn.hpp>
#include <asio/post.hpp>
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
    const auto body = [&step]() -> Async<Result> { co_return step(); };
    co_return co_await spawned(body, static_cast<void (*)(std::exception_ptr, Result)>(nullptr));
  }
  template <class Step>
  Async<void> run(Step step, void* /*plain*/) const {
    const auto body = [&step]() -> Async<void> {
      step();
      co_return;
    };
    co_await spawned(body, static_cast<void (*)(std::exception_ptr)>(nullptr));
  }
  template <class Step, class T>
  Async<T> run(Step step, Async<T>* /*coroutine*/) const {
    const auto body = [&step]() -> Async<T> { return step(); };
    co_return co_await spawned(body, static_cast<void (*)(std::exception_ptr, T)>(nullptr));
  }
  template <class Step>
  Async<void> run(Step step, Async<void>* /*coroutine*/) const {
    const auto body = [&step]() -> Async<void> { return step(); };
    co_await spawned(body, static_cast<void (*)(std::exception_ptr)>(nullptr));
  }

  /// Posted first: co_spawn alone would run an operation that is awaited on a thread of the same
  /// pool inside this call, and whoever awaits it there be blocked all the while.
  template <class Body, class... T>
  auto spawned(const Body& body, void (* /*ended*/)(std::exception_ptr, T...)) const {
    return asio::async_initiate<const asio::use_awaitable_t<>&, void(std::exception_ptr, T...)>(
        [strand = strand_, &body](auto handler) {
          asio::post(strand, [strand, &body, handler = std::move(handler)]() mutable {
            asio::co_spawn(strand, body, std::move(handler));
          });
        },
        asio::use_awaitable);
  }

  asio::strand<Executor> strand_;
};

}  // namespace zelnor::tasks
