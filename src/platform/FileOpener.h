#pragma once

#include <string>

#include "platform/FileError.h"

namespace zelnor::platform {

/// The proof that a user asked for a new window, without which it may open behind others.
struct Activation {
  /// On X11 a startup notification id, which holds the time of the user's last input; on Wayland a
  /// token of xdg-activation. Empty if there is none.
  std::string token;

  friend bool operator==(const Activation&, const Activation&) = default;
};

/// Shows files in other programs. Paths are absolute, in bytes.
///
/// Thread-safe. Every call waits for the disk and for other programs, for these some ten seconds at
/// most, so none belongs on the main thread. What is started inherits the priority of the calling
/// thread.
class FileOpener {
 public:
  virtual ~FileOpener() = default;

  /// Opens what is at `path` with the default application for its kind. Throws FileError if there
  /// is none or if it cannot be started.
  virtual void open(const std::string& path, const Activation& activation) = 0;
  /// Shows what is at `path`, selected, in a window of the file manager; if there is no file
  /// manager that can, the folder it is in. Throws FileError if neither can be shown.
  virtual void reveal(const std::string& path, const Activation& activation) = 0;
};

}  // namespace zelnor::platform
