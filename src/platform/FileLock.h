#pragma once

#include <optional>
#include <stop_token>
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
  /// Waits for as long as others hold the lock; nothing if `stop` is requested before. Blocks, and
  /// whoever requests the stop waits for this to notice, a millisecond at most. Throws as
  /// `tryAcquire` does.
  static std::optional<FileLock> acquireWhenFree(const std::string& path,
                                                 const std::stop_token& stop);

 private:
  explicit FileLock(FileDescriptor file) : file_(std::move(file)) {}
  FileDescriptor file_;
};

}  // namespace zelnor::platform
