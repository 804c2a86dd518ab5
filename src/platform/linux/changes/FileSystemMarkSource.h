#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/linux/changes/ChangeSource.h"
#include "platform/linux/changes/FanotifyQueue.h"

namespace zelnor::platform {

/// Follows whole file systems by one fanotify(7) mark each, which takes CAP_SYS_ADMIN. The kernel
/// names a folder by its handle; where the folder is now is found by opening the handle, which
/// takes CAP_DAC_READ_SEARCH.
class FileSystemMarkSource final : public ChangeSource {
 public:
  /// Nothing if the process may not. Events directly in the folders at `ignored` are dropped by the
  /// kernel, so that they wake nobody.
  static std::unique_ptr<FileSystemMarkSource> create(const std::vector<std::string>& ignored);

  FileSystemMarkSource(FanotifyQueue queue, std::vector<std::string> ignored)
      : queue_(std::move(queue)), ignored_(std::move(ignored)) {}

  bool follow(const std::string& path, const EntryState& state, ChangeSink& sink) override;
  void detach(const std::string& /*path*/) override {}
  void releaseDetached() override {}
  [[nodiscard]] bool tellsOf(const std::string& path) const override;
  [[nodiscard]] std::size_t followedFolders() const override;

  [[nodiscard]] int descriptor() const override { return queue_.descriptor(); }
  void readChanges(ChangeSink& sink) override;

 private:
  using Paths = std::vector<std::string>;
  /// A folder from which a walk began: how the user calls it, and the kernel.
  struct Entrance {
    std::string path;
    std::string realPath;
  };
  /// A mount, with the folders by which it is entered. None is kept open: that would keep the user
  /// from unmounting it.
  struct Mount {
    bool isMarked = false;
    fsid_t fileSystem{};
    std::vector<Entrance> entrances;
    std::size_t folders = 0;

    [[nodiscard]] bool isEntrance(const std::string& path) const;
    [[nodiscard]] bool leadsTo(const std::string& path) const;
  };

  void enter(Mount& mount, const std::string& path, bool isBehindLink);
  void ignoreOwn() const;
  void forgetIfEntered();
  const Paths& pathsOf(const FolderHandle& folder);
  [[nodiscard]] Paths resolve(const FolderHandle& folder) const;
  static std::optional<std::string> pathIn(const std::vector<Entrance>& entrances,
                                           const FolderHandle& folder);

  FanotifyQueue queue_;
  const std::vector<std::string> ignored_;
  mutable std::mutex mutex_;
  std::map<std::uint64_t, Mount> mounts_;  ///< by the mount's number
  std::uint64_t timesEntered_ = 0;
  /// Where folders are; only what has not moved since, and no entrance was added. Used by the
  /// thread that reads.
  std::unordered_map<std::uint64_t, Paths> resolved_;
  std::uint64_t resolvedAfter_ = 0;  ///< times entered
};

}  // namespace zelnor::platform
