#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zelnor::platform {

/// What the file system says about one entry itself; a symbolic link is not followed.
struct FileAttributes {
  std::int64_t size = 0;  ///< bytes; 0 for a folder
  std::int64_t mtime =
      0;  ///< content modification, whole seconds since 1970, truncated toward zero
  std::uint64_t inode = 0;
  std::uint64_t device = 0;
  bool isDirectory = false;
  bool isSymlink = false;

  friend bool operator==(const FileAttributes&, const FileAttributes&) = default;
};

/// Reads the attributes of `path`, of any length (also beyond PATH_MAX). Nothing if it is not there
/// or cannot be read.
std::optional<FileAttributes> readAttributes(const std::string& path);

/// Seconds since 1970 truncated toward zero, from the kernel's form: whole seconds rounded down,
/// and 0 … 999,999,999 nanoseconds on top.
constexpr std::int64_t truncatedSeconds(std::int64_t seconds, std::uint32_t nanoseconds) {
  return seconds < 0 && nanoseconds > 0 ? seconds + 1 : seconds;
}

}  // namespace zelnor::platform
