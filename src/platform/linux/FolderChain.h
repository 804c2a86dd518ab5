#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileDescriptor.h"

namespace zelnor::platform {

/// The open folders from the root of a walk down to where it is, and the path that this makes.
///
/// Every step is relative to an open folder, so that neither the length of a path nor a rename
/// further up matters. Only the root and the deepest folders keep their descriptors; the others are
/// opened again on the way back.
class FolderChain {
 public:
  /// Nothing if `root` is no folder or cannot be listed. A root that is a link to a folder is
  /// followed.
  static std::optional<FolderChain> open(std::string root);

  /// How many folders there are, the root included; 0 after the root was left.
  [[nodiscard]] std::size_t depth() const { return folders_.size(); }
  /// The descriptor of the deepest folder, for `openat` and its like; -1 (of which nothing can be
  /// read) if the folder is no longer there.
  [[nodiscard]] int descriptor() const { return folders_.back().file.get(); }
  /// The device of the deepest folder.
  [[nodiscard]] std::uint64_t device() const { return folders_.back().identity.device; }

  /// Makes `path()` the path of `name` in the deepest folder.
  void point(std::string_view name);
  [[nodiscard]] std::string_view path() const { return path_; }
  /// The last component of `path()`, as system calls take it.
  [[nodiscard]] const char* name() const { return path_.c_str() + folders_.back().pathLength + 1; }

  /// Goes down into the folder that `path()` names; answers whether it could. With
  /// `unlessAncestor`, a folder that is already on the chain is not entered again.
  bool enter(bool unlessAncestor);
  /// Goes back up to the parent, or above the root.
  void leave();

 private:
  struct Identity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    friend bool operator==(const Identity&, const Identity&) = default;
  };
  struct Folder {
    FileDescriptor file;
    Identity identity;
    std::size_t pathLength = 0;
  };

  FolderChain() = default;
  static std::optional<Identity> identify(const FileDescriptor& file);
  [[nodiscard]] FileDescriptor openPointed();
  [[nodiscard]] bool contains(const Identity& identity) const;
  bool closeShallowest();
  [[nodiscard]] FileDescriptor reopenDeepest(const FileDescriptor& child) const;
  [[nodiscard]] FileDescriptor stepDownFromRoot() const;
  [[nodiscard]] bool isDeepest(const FileDescriptor& file) const;

  std::string path_;
  std::vector<Folder> folders_;
  std::size_t firstOpen_ = 1;  ///< of the folders below the root, those before this one are closed
};

}  // namespace zelnor::platform
