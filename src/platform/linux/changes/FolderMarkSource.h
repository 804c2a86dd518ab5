#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/linux/changes/ChangeSource.h"
#include "platform/linux/changes/FanotifyQueue.h"
#include "platform/linux/changes/FollowedFolders.h"

namespace zelnor::platform {

/// Follows folders by one fanotify(7) mark each, which any process may set since Linux 5.13. Marks
/// are plentiful and nobody else's.
///
/// Changes of a folder's own attributes come under its own handle, also where only the folder that
/// it is in has a mark. So a folder that may not be entered, which takes no mark, is kept among
/// those that are followed: its permissions and times are told of all the same.
///
/// A mark cannot be taken off a folder that moved out of the roots, because nobody tells where it
/// went: its events are ignored from then on, and it goes with the folder or the stream.
class FolderMarkSource final : public ChangeSource {
 public:
  /// Nothing if the kernel does not allow it. `limit`: how many folders at most.
  static std::unique_ptr<FolderMarkSource> create(std::size_t limit);

  FolderMarkSource(FanotifyQueue queue, std::size_t limit)
      : queue_(std::move(queue)), folders_(limit) {}

  bool follow(const std::string& path, const EntryState& state, ChangeSink& sink) override;
  void detach(const std::string& path) override { folders_.detach(path); }
  void releaseDetached() override { folders_.takeDetached(); }
  [[nodiscard]] bool tellsOf(const std::string& path) const override {
    return folders_.contains(path) && folders_.contains(std::string(parentOf(path)));
  }
  [[nodiscard]] std::size_t followedFolders() const override { return folders_.size(); }

  [[nodiscard]] int descriptor() const override { return queue_.descriptor(); }
  void readChanges(ChangeSink& sink) override;

 private:
  bool markMakingRoom(const FileDescriptor& folder, std::int32_t rank, ChangeSink& sink);
  void giveUp(const FollowedFolders::Folder& folder, ChangeSink& sink);

  FanotifyQueue queue_;
  FollowedFolders folders_;
};

}  // namespace zelnor::platform
