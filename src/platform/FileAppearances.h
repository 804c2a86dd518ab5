#pragma once

#include <string>
#include <vector>

namespace zelnor::platform {

/// How the desktop shows an entry.
struct FileAppearance {
  std::vector<std::string> iconNames;  ///< in an icon theme, the most fitting first
  std::string thumbnail;               ///< the path of a current small picture of it; may be empty
};

/// Tells how the desktop shows files. Paths are absolute, in bytes. Thread-safe; waits for the
/// disk.
class FileAppearances {
 public:
  virtual ~FileAppearances() = default;

  /// By its name and type; no content is opened. Links have a look of their own. What is not there
  /// has no names.
  virtual FileAppearance appearance(const std::string& path, bool isFolder) = 0;
};

}  // namespace zelnor::platform
