#pragma once

namespace zelnor::platform {

/// Whether this process can read all that its user can. Thread-safe; waits for the disk.
class AccessCheck {
 public:
  virtual ~AccessCheck() = default;

  [[nodiscard]] virtual bool hasFullDiskAccess() const = 0;
};

}  // namespace zelnor::platform
