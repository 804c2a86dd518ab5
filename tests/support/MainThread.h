#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>

#include "tasks/Async.h"

namespace zelnor::test {

/// The test's own thread as the main executor: it runs only while the test waits for something, at
/// most for a hard time-out. It outlives the thread pools whose work resumes on it.
class MainThread {
 public:
  [[nodiscard]] tasks::Executor executor() { return context_.get_executor(); }

  /// Runs until `operation` has ended; answers its value or throws its error.
  template <class T>
  T await(tasks::Async<T> operation) {
    std::exception_ptr error;
    if constexpr (std::is_void_v<T>) {
      bool done = false;
      asio::co_spawn(context_, std::move(operation), [&](std::exception_ptr e) {
        error = std::move(e);
        done = true;
      });
      runUntil([&] { return done; });
      if (error) std::rethrow_exception(error);
    } else {
      std::optional<T> result;
      asio::co_spawn(context_, std::move(operation), [&](std::exception_ptr e, T value) {
        error = std::move(e);
        result = std::move(value);
      });
      runUntil([&] { return result.has_value(); });
      if (error) std::rethrow_exception(error);
      return std::move(*result);
    }
  }

  /// Runs what arrives until `condition` holds; throws after `timeout`.
  void runUntil(const std::function<bool()>& condition,
                std::chrono::seconds timeout = std::chrono::seconds(60)) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
      context_.restart();
      context_.run_one_for(std::chrono::milliseconds(20));
      if (std::chrono::steady_clock::now() > deadline) throw std::runtime_error("timed out");
    }
  }

  /// Runs what is ready now, without waiting.
  void runReady() {
    context_.restart();
    context_.poll();
  }

 private:
  asio::io_context context_;
};

}  // namespace zelnor::test
