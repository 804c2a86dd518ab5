#pragma once

#include <cstdint>
#include <string>

namespace zelnor::platform {

/// Whom a walk tells of the folders that it goes through and of what it cannot see, on the thread
/// that walks. Paths are
/// absolute, without a slash at the end ("/" itself is the empty text).
class FolderVisitor {
 public:
  virtual ~FolderVisitor() = default;

  /// A folder, before it is listed: whoever wants to miss nothing follows it now.
  virtual void willList(const std::string& folder) = 0;
  /// The folder is there but could not be listed, or not all of it be looked at.
  virtual void couldNotList(const std::string& folder) = 0;
  /// This file is left out because it may not be read, and it has other names: whoever changes that
  /// by one of them does so for this one too.
  virtual void couldNotRead(const std::string& path, std::uint64_t inode) = 0;
};

}  // namespace zelnor::platform
