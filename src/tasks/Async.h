#pragma once

#include <asio/any_io_executor.hpp>
#include <asio/awaitable.hpp>

namespace zelnor::tasks {

/// Where work runs: a thread pool, an actor's strand, the main thread's queue. Cheap to copy.
using Executor = asio::any_io_executor;

/// The result of an asynchronous operation. A coroutine that awaits one is resumed on its own
/// executor, wherever the operation ran; an exception thrown by the operation is rethrown to it.
template <class T = void>
using Async = asio::awaitable<T>;

}  // namespace zelnor::tasks
