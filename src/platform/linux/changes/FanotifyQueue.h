#pragma once

#include <sys/statfs.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/FileDescriptor.h"
#include "platform/linux/changes/ChangeSource.h"

namespace zelnor::platform {

/// A folder as fanotify(7) names it: the file system's number and the file's handle there.
struct FolderHandle {
  fsid_t fileSystem{};
  std::span<const std::byte> handle;  ///< a `struct file_handle`, name_to_handle_at(2)

  /// A number for the folder that no other folder has, but for odds of one in 2^64.
  [[nodiscard]] std::uint64_t key() const;
};

/// One event: what happened to a name in a folder.
struct FanotifyEvent {
  FolderHandle folder;
  std::string_view name;  ///< empty: the folder itself
  std::uint64_t mask = 0;

  [[nodiscard]] FolderChange describe(std::string folderPath) const;
  /// Whether a folder came or went, so that paths change.
  [[nodiscard]] bool movesFolders() const;
};

/// A fanotify group that reports names in folders.
class FanotifyQueue {
 public:
  /// Nothing if this kernel, or what the process may do, does not allow it.
  static std::optional<FanotifyQueue> open();

  /// Marks the file system that holds `folder`, or the folder alone. Answers whether it did, with
  /// the reason in errno.
  [[nodiscard]] bool markFileSystem(const FileDescriptor& folder) const;
  [[nodiscard]] bool markFolder(const FileDescriptor& folder) const;
  bool unmarkFolder(const FileDescriptor& folder) const;
  /// Events directly in this folder are dropped by the kernel.
  bool ignoreFolder(const FileDescriptor& folder) const;

  /// Reads what there is. `visit` gets each event; `lost` is called where the kernel dropped some.
  void read(const std::function<void(const FanotifyEvent&)>& visit,
            const std::function<void()>& lost);

  [[nodiscard]] int descriptor() const { return queue_.get(); }

 private:
  explicit FanotifyQueue(FileDescriptor queue);

  FileDescriptor queue_;
  std::vector<std::byte> buffer_;
};

/// The handle of an open folder, as events name it. The bytes are kept in `storage`.
std::optional<FolderHandle> handleOf(const FileDescriptor& folder, std::vector<std::byte>& storage);

}  // namespace zelnor::platform
