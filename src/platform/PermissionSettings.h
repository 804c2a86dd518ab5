#pragma once

#include "platform/FileOpener.h"

namespace zelnor::platform {

/// The desktop's own page where its user says what each application may do. Thread-safe; waits for
/// the disk, so it belongs on no main thread.
class PermissionSettings {
 public:
  virtual ~PermissionSettings() = default;

  /// Opens the page in a program of the desktop. Answers false if this desktop has none, or if it
  /// cannot be started.
  virtual bool open(const Activation& activation) = 0;
};

}  // namespace zelnor::platform
