#pragma once

#include <utility>

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <asio/use_future.hpp>

#include "tasks/Async.h"

namespace zelnor::cli {

/// The program's main thread as an executor. It runs while it waits for something.
class RunLoop {
 public:
  [[nodiscard]] tasks::Executor executor() { return context_.get_executor(); }

  /// Runs until `operation` has ended; answers its value or throws its error.
  template <class T>
  T await(tasks::Async<T> operation) {
    auto result = asio::co_spawn(context_, std::move(operation), asio::use_future);
    context_.restart();
    context_.run();
    return result.get();
  }

 private:
  asio::io_context context_;
};

}  // namespace zelnor::cli
