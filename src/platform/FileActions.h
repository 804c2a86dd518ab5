#pragma once

#include <string>

#include "platform/FileError.h"

namespace zelnor::platform {

/// Changes that users make to files. Paths are absolute, in bytes, of any length.
///
/// Thread-safe. Every call waits for the disk, so none belongs on the main thread.
class FileActions {
 public:
  virtual ~FileActions() = default;

  /// Moves what is at `path` to the trash of its file system, from where it can be restored; a link
  /// itself, not what it leads to. Throws FileError, also where there is no trash: nothing is ever
  /// deleted instead.
  virtual void trash(const std::string& path) = 0;

  /// Gives what is at `from` the path `to`, which has to be another name in the same folder. An
  /// entry that has the name already is never replaced. Throws FileError, and everything is as it
  /// was.
  virtual void rename(const std::string& from, const std::string& to) = 0;
};

}  // namespace zelnor::platform
