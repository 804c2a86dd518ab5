#pragma once

#include <type_traits>

#include <asio/co_spawn.hpp>
#include <asio/use_awaitable.hpp>

#include "tasks/Async.h"

namespace zelnor::tasks {

/// Runs `work`, which the caller keeps, on `executor`; answers what it returns. Pass a named
/// function object: GCC 12 destroys a temporary twice that owns something and is an argument in a
/// co_await expression.
template <class Work>
auto runOn(Executor executor, const Work& work) -> Async<std::invoke_result_t<const Work&>> {
  using Result = std::invoke_result_t<const Work&>;
  co_return co_await asio::co_spawn(
      executor, [&work]() -> Async<Result> { co_return work(); }, asio::use_awaitable);
}

}  // namespace zelnor::tasks
