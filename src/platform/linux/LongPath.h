#pragma once

#include <string>

#include "platform/FileDescriptor.h"

namespace zelnor::platform {

/// A path that the kernel accepts, relative to an open folder. System calls refuse paths of
/// PATH_MAX bytes and more (path_resolution(7)), but a tree may well be deeper.
struct ShortPath {
  FileDescriptor folder;       ///< none for a path that is relative to nothing
  const char* rest = nullptr;  ///< points into the path it was made from

  /// What `openat` and its like take as their folder.
  [[nodiscard]] int folderOrCurrent() const;
};

/// Steps through the folders of a `path` of any length until the rest is short. The folder is none
/// and the rest null if the way cannot be gone, with the reason in errno.
ShortPath shorten(const std::string& path);

}  // namespace zelnor::platform
