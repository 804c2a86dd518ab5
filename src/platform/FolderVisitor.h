#pragma once

#include <cstdint>
#include <string>

namespace zelnor::platform {

/// Whom a walk tells of the folders that it goes through, and of what else it may miss, on the
/// thread that walks. Paths are absolute, without a slash at the end ("/" itself is the empty
/// text).
class FolderVisitor {
 public:
  virtual ~FolderVisitor() = default;

  /// A folder, before it is listed: whoever wants to miss nothing follows it now.
  virtual void willList(const std::string& folder) = 0;
  /// The folder is there but could not be listed, or not all of it be looked at.
  virtual void couldNotList(const std::string& folder) = 0;
  /// One name of a file that has several: what changed by it may have come after the walk saw the
  /// others, and if it is left out because it may not be read, that may be changed by another.
  virtual void foundName(const std::string& path, std::uint64_t inode) = 0;
};

}  // namespace zelnor::platform
