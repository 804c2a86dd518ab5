#pragma once

#include <optional>
#include <string>

#include "platform/FileDescriptor.h"

namespace zelnor::platform {

/// A lock between processes on a file; released when the value, or the process, goes away.
class FileLock {
 public:
  /// Takes the lock on `path` (created 0600 if missing) without waiting; nothing if another holder
  /// has it. Throws std::system_error if the file cannot be created or opened.
  static std::optional<FileLock> tryAcquire(const std::string& path);
  /// As `tryAcquire`, but waits for other holders, who should not have it for long.
  static FileLock acquire(const std::string& path);

 private:
  explicit FileLock(FileDescriptor file) : file_(std::move(file)) {}
  FileDescriptor file_;
};

}  // namespace zelnor::platform
