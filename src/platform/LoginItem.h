#pragma once

#include <cstdint>

namespace zelnor::platform {

/// Whether the desktop starts the program when the user logs in. The desktop keeps that, not we:
/// every call looks at, or changes, its own files.
class LoginItem {
 public:
  enum class Status : std::uint8_t { notRegistered, enabled, requiresApproval, notFound };

  virtual ~LoginItem() = default;

  [[nodiscard]] virtual Status status() const = 0;
  /// Both throw std::system_error or FileError, with words for the log, and change nothing then.
  virtual void registerItem() = 0;
  virtual void unregisterItem() = 0;
};

}  // namespace zelnor::platform
