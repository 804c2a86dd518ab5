#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileAttributes.h"

namespace zelnor::platform {

/// Enumerates everything below one folder, however deep.
///
/// Entries come in byte order of their whole paths ("a", "a.txt", "a/b"), so that two walks can be
/// merged; a folder comes before its contents. Each folder is read once, its entries' attributes
/// are read relative to it, and at most one folder's listing per level is in memory. Links are
/// listed, never followed. Folders that cannot be listed, entries that vanish meanwhile, pseudo
/// file systems (proc, sysfs, cgroup and the like) and bind mounts of a folder into itself are
/// passed over: the folder is listed, its contents are not. Used by one thread at a time.
class DirectoryEnumerator {
 public:
  struct Options {
    bool skipsHiddenFiles = false;  ///< names that begin with a dot, and all below such folders
    bool skipsPackageDescendants = false;  ///< the contents of folders whose name ends in ".app"
  };
  struct Entry {
    std::string_view path;  ///< absolute; valid until the next call
    std::string_view name;  ///< last component of `path`
    FileAttributes attributes;
    bool isReadable = true;      ///< by the current user; for a link: the link itself
    bool hasOtherNames = false;  ///< several hard links; not a folder
  };

  /// Nothing if `root` is not a folder or cannot be opened. `root` itself is not enumerated; it may
  /// be hidden or a package.
  static std::optional<DirectoryEnumerator> open(const std::string& root, Options options);

  DirectoryEnumerator(DirectoryEnumerator&&) noexcept;
  DirectoryEnumerator& operator=(DirectoryEnumerator&&) noexcept;
  ~DirectoryEnumerator();

  /// The next entry, or nothing at the end.
  std::optional<Entry> next();
  /// Leaves out what is below the entry that `next()` returned last. No effect on an entry that is
  /// no folder.
  void skipDescendants();
  /// The folders that were passed over since the last call although they are there, wholly or in
  /// part: no permission, an I/O error. What is in them is not known; they are not empty.
  std::vector<std::string> takeUnlisted();

 private:
  struct State;
  explicit DirectoryEnumerator(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

}  // namespace zelnor::platform
