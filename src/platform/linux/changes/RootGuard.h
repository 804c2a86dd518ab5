#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileDescriptor.h"
#include "platform/linux/changes/MountTable.h"

namespace zelnor::platform {

/// Knows whether the roots, and what is mounted below them, are where they should be. An entry that
/// is missing because its root was moved away or its file system unmounted is not gone.
///
/// Where file systems belong is remembered in a file, so that one that is not mounted yet when the
/// program starts is missed. Thread-safe.
class RootGuard {
 public:
  /// What has changed about the places since the last look.
  struct News {
    std::vector<std::string> toCompare;  ///< roots and mount points to be compared with the index
    std::vector<std::string> bared;      ///< mount points on which nothing is mounted any more
    std::vector<std::string> replaced;   ///< roots at whose path there is another folder now
  };

  /// `stateFolder` may be empty: then nothing is remembered.
  RootGuard(const std::vector<std::string>& roots, const std::string& stateFolder);

  /// Looks at every root and mount point. A root that is there for the first time is no news.
  News look();

  /// Whether an entry at `path` that is not found is really gone.
  [[nodiscard]] bool isInPlace(std::string_view path);
  /// Whether a root is missing at the last look; it may come back without anybody telling.
  [[nodiscard]] bool isAnyAway() const;

  /// Readable when a folder above a root, or the root, changed so that `look` may have news.
  [[nodiscard]] int namesDescriptor() const { return names_.get(); }
  /// Has an exceptional condition when something is mounted or unmounted, proc(5).
  [[nodiscard]] int mountsDescriptor() const { return mountInfo_.get(); }
  /// Takes what made the descriptors ready; answers whether it concerns the roots.
  bool takeHints();

 private:
  struct Identity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    friend bool operator==(const Identity&, const Identity&) = default;
  };
  struct Root {
    std::string path;
    std::optional<Identity> identity;       ///< nothing before it was seen
    std::optional<std::string> mountPoint;  ///< that it is on
    bool isAway = false;
    bool wasUnmounted = false;
    bool wasMoved = false;  ///< since the last look, be it there and back
  };

  static std::optional<Identity> identify(const std::string& path);
  static void lookAt(Root& root, const MountTable& mounts, News& news);
  static void settle(Root& root, const Identity& identity, const MountTable& mounts, News& news);
  void lookBelow(const MountTable& mounts, News& news);
  void leave(const std::string& point, News& news);
  void watchNames(const std::string& root);
  void watch(const std::string& folder, std::uint32_t mask);
  void noteMove(int watch, std::string_view name);
  void recall();
  void remember();

  mutable std::mutex mutex_;
  std::vector<Root> roots_;
  std::set<std::string> present_;     ///< mount points below roots
  std::set<std::string> unmounted_;   ///< where something was mounted below roots
  std::set<std::string> components_;  ///< of the roots' paths
  const std::string memory_;          ///< the file; empty: none
  std::string remembered_;
  std::map<int, std::string> watches_;  ///< what inotify watches, by its identifier
  FileDescriptor names_;
  FileDescriptor mountInfo_;
};

}  // namespace zelnor::platform
