#pragma once

#include <string>
#include <vector>

namespace zelnor::platform {

/// The desktop's clipboard. Main thread only; neither call waits for anything.
class Clipboard {
 public:
  virtual ~Clipboard() = default;

  /// Puts these files on the clipboard, so that pasting in a file manager copies them, and pasting
  /// into a text their paths, a line each. Absolute paths in bytes.
  virtual void copyFiles(const std::vector<std::string>& paths) = 0;
  /// Puts these bytes on the clipboard as text, as they are, also if they are not UTF-8.
  virtual void copyText(const std::string& bytes) = 0;
};

}  // namespace zelnor::platform
