#pragma once

#include <chrono>

namespace zelnor::bench {

/// Measures from its making on, on the monotonic clock.
class Stopwatch {
 public:
  [[nodiscard]] double seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace zelnor::bench
