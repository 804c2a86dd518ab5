#pragma once

#include <stop_token>
#include <system_error>

namespace zelnor::tasks {

/// The error of an operation that was given up before its end.
[[nodiscard]] inline std::system_error cancelled() {
  return {std::make_error_code(std::errc::operation_canceled)};
}

/// Throws `cancelled()` if `stop` is requested.
inline void throwIfStopped(const std::stop_token& stop) {
  if (stop.stop_requested()) throw cancelled();
}

}  // namespace zelnor::tasks
