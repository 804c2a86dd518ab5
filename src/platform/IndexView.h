#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace zelnor::platform {

/// One entry as the index knows it.
struct IndexEntry {
  enum class Kind : std::uint8_t { file, folder, link };

  std::string_view path;  ///< absolute; valid until the cursor moves
  std::int64_t size = 0;
  std::int64_t mtime = 0;  ///< whole seconds since 1970
  std::uint64_t inode = 0;
  Kind kind = Kind::file;
};

/// Walks the entries of the index in byte order of their whole paths. Used by one thread.
///
/// It need not be a snapshot: what is written while the cursor moves may or may not show, but
/// nothing that stays as it is may be left out. Operations throw whatever reading the index throws.
class IndexCursor {
 public:
  virtual ~IndexCursor() = default;

  /// The next entry, or nothing at the end.
  virtual std::optional<IndexEntry> next() = 0;
  /// Moves so that `next` gives the first entry whose path is `path` or comes after it.
  virtual void seek(std::string_view path) = 0;
};

/// What the index holds, for the change stream to compare with the disk. Read-only.
///
/// Called on the change stream's own threads, several at a time. An operation that can be stopped
/// first waits until all changes that the stream delivered before the call are in the index, or
/// until `stop` is requested (then what it answers does not matter). Without this wait, a change
/// that was delivered but not yet written could leave a row behind that nothing ever corrects.
class IndexView {
 public:
  virtual ~IndexView() = default;

  /// A cursor before the first entry.
  virtual std::unique_ptr<IndexCursor> open(std::stop_token stop) = 0;

  /// The inode number that the index has for the entry at exactly `path`; nothing if it does not
  /// know the path.
  virtual std::optional<std::uint64_t> inodeOf(const std::string& path, std::stop_token stop) = 0;

  /// The paths of the files and links with this inode number (on any device): the names of one that
  /// has several.
  virtual std::vector<std::string> pathsWithInode(std::uint64_t inode, std::stop_token stop) = 0;

  /// The paths of the folders with this inode number (on any device), as they are in the index now.
  /// Does not wait: for those who look for the place that a folder came from before that is
  /// forgotten.
  virtual std::vector<std::string> foldersWithInode(std::uint64_t inode) = 0;
};

}  // namespace zelnor::platform
