#pragma once

#include <utility>

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <asio/use_future.hpp>

#include "tasks/Async.h"

namespace zelnor::tasks {

/// The calling thread as the main executor, for programs without a window: it runs only while it
/// waits for an operation.
class RunLoop {
 public:
  [[nodiscard]] Executor executor() { return context_.get_executor(); }

  /// Runs until `operation` has ended; answers its value or throws its error.
  template <class T>
  T await(Async<T> operation) {
    auto result = asio::co_spawn(context_, std::move(operation), asio::use_future);
    context_.restart();
    context_.run();
    return result.get();
  }

 private:
  asio::io_context context_;
};

}  // namespace zelnor::tasks
