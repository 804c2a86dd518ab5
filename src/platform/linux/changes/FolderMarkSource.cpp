#include "platform/linux/changes/FolderMarkSource.h"

#include <cerrno>
#include <ctime>
#include <utility>

namespace zelnor::platform {

std::unique_ptr<FolderMarkSource> FolderMarkSource::create(std::size_t limit) {
  auto queue = FanotifyQueue::open();
  return queue ? std::make_unique<FolderMarkSource>(std::move(*queue), limit) : nullptr;
}

bool FolderMarkSource::follow(const std::string& path, const EntryState& state, ChangeSink& sink) {
  const auto rank = watchRank(path, std::time(nullptr) - state.attributes.mtime);
  if (!folders_.admits(path, rank)) return false;
  const auto folder = openFolder(path, state.isBehindLink);
  std::vector<std::byte> storage;
  const auto handle = handleOf(folder, storage);
  if (!handle) return false;
  const bool isMarked = markMakingRoom(folder, rank, sink);
  if (!isMarked && errno != EACCES) return false;
  const auto excess = folders_.add(path, handle->key(), rank);
  if (excess) giveUp(*excess, sink);
  return isMarked && (!excess || excess->key != handle->key());
}

bool FolderMarkSource::markMakingRoom(const FileDescriptor& folder, std::int32_t rank,
                                      ChangeSink& sink) {
  if (queue_.markFolder(folder)) return true;
  if (errno != ENOSPC) return false;
  const auto excess = folders_.makeRoom(rank);
  if (!excess) return false;
  giveUp(*excess, sink);
  return queue_.markFolder(folder);
}

void FolderMarkSource::giveUp(const FollowedFolders::Folder& folder, ChangeSink& sink) {
  if (folder.path.empty()) return;
  const auto place = openFolder(folder.path, /*followsLink=*/true);
  std::vector<std::byte> storage;
  const auto handle = handleOf(place, storage);
  if (handle && handle->key() == folder.key) queue_.unmarkFolder(place);
  sink.givenUp({folder.path});
}

void FolderMarkSource::readChanges(ChangeSink& sink) {
  queue_.read(
      [&](const FanotifyEvent& event) {
        if (auto path = folders_.pathOf(event.folder.key())) {
          sink.folderChanged(event.describe(std::move(*path)));
        }
      },
      [&] { sink.changesLost(); });
}

}  // namespace zelnor::platform
