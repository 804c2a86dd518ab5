#pragma once

#include <string>

namespace zelnor::platform {

/// Where a user's things are, as absolute paths in bytes.
struct UserFolders {
  std::string home;
  std::string data;    ///< the program's own data: the index and the bookmarks
  std::string config;  ///< the program's settings

  /// The running user's folders, by the XDG base directories; `data` and `config` end
  /// in "/Zelnor". Nothing is created.
  static UserFolders current();
};

/// The absolute form of a path that a user gave, without "." and ".." and without a '/' at its end,
/// because paths below a folder are made by appending to it. The disk is not asked.
std::string absolutePath(const std::string& path);

/// Creates `folder` with any missing parents, each readable by its owner alone (0700). Existing
/// folders stay as they are. Throws std::filesystem::filesystem_error.
void createPrivateFolder(const std::string& folder);

}  // namespace zelnor::platform
