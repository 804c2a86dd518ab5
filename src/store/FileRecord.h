#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/FileAttributes.h"

namespace zelnor {

/// What an entry is. The raw values are stored in the index.
enum class FileKind : std::uint8_t { file = 0, directory = 1, symlink = 2 };

inline constexpr std::array kAllFileKinds{FileKind::file, FileKind::directory, FileKind::symlink};

/// The kind with this raw value, or nothing.
std::optional<FileKind> fileKind(std::int64_t rawValue);

/// One entry of the index. Names and paths are bytes as the file system gives them, not necessarily
/// UTF-8.
struct FileRecord {
  std::int64_t id = 0;     ///< row in table `files`; 0 in a record built from the file system
  std::string name;        ///< last component of `path`
  std::string path;        ///< absolute; unique in the index
  std::int64_t size = 0;   ///< bytes; 0 for folders
  std::int64_t mtime = 0;  ///< whole seconds since 1970 UTC, truncated toward zero; 0 if unknown
  FileKind kind = FileKind::file;
  std::int64_t inode = 0;  ///< the file system's number of the object; 0 if unavailable

  /// The record of the entry at `path`; nothing if it is not there or cannot be read. A link is not
  /// followed.
  static std::optional<FileRecord> fromPath(const std::string& path);
  /// The record of an entry whose attributes are known.
  static FileRecord from(std::string name, std::string path,
                         const platform::FileAttributes& attributes);

  friend bool operator==(const FileRecord&, const FileRecord&) = default;
  friend auto operator<=>(const FileRecord&, const FileRecord&) = default;
};

}  // namespace zelnor

template <>
struct std::hash<zelnor::FileRecord> {
  std::size_t operator()(const zelnor::FileRecord& record) const noexcept;
};
