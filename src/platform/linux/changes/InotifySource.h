#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/FileDescriptor.h"
#include "platform/linux/changes/ChangeSource.h"
#include "platform/linux/changes/FollowedFolders.h"

namespace zelnor::platform {

/// Follows folders by one inotify(7) watch each.
class InotifySource final : public ChangeSource {
 public:
  /// Nothing if the user has no inotify instance left. `limit`: how many folders at most.
  static std::unique_ptr<InotifySource> create(std::size_t limit);

  InotifySource(FileDescriptor queue, std::size_t limit);

  bool follow(const std::string& path, const EntryState& state, ChangeSink& sink) override;
  void detach(const std::string& path) override { folders_.detach(path); }
  void releaseDetached() override;
  [[nodiscard]] bool tellsOf(const std::string& path) const override {
    return folders_.contains(std::string(parentOf(path)));
  }
  [[nodiscard]] std::size_t followedFolders() const override { return folders_.size(); }

  [[nodiscard]] int descriptor() const override { return queue_.get(); }
  void readChanges(ChangeSink& sink) override;

 private:
  int addWatch(const std::string& path, bool followsLink) const;
  int addWatchMakingRoom(const std::string& path, const EntryState& state, std::int32_t rank,
                         ChangeSink& sink);
  void giveUp(const FollowedFolders::Folder& folder, ChangeSink& sink);
  void report(std::span<const std::byte> events, ChangeSink& sink);

  FileDescriptor queue_;
  FollowedFolders folders_;
  std::vector<std::byte> buffer_;
};

}  // namespace zelnor::platform
