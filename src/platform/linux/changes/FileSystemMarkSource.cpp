#include "platform/linux/changes/FileSystemMarkSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <numeric>

namespace zelnor::platform {

namespace {

const std::string kTop = "/";

/// A folder that is removed while somebody has it open has no path any more.
bool isRemoved(const FileDescriptor& folder) {
  struct stat status{};
  return ::fstat(folder.get(), &status) != 0 || status.st_nlink == 0;
}

/// The path that the kernel has for an open folder, proc(5); nothing if it cannot tell, as for one
/// of PATH_MAX bytes and more.
std::optional<std::string> pathOf(const FileDescriptor& folder) {
  const auto link = "/proc/self/fd/" + std::to_string(folder.get());
  std::array<char, PATH_MAX> path{};
  const auto length = ::readlink(link.c_str(), path.data(), path.size());
  if (length <= 0 || path[0] != '/') return std::nullopt;
  return std::string(path.data(), static_cast<std::size_t>(length));
}

bool isSame(const fsid_t& a, const fsid_t& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

}  // namespace

std::unique_ptr<FileSystemMarkSource> FileSystemMarkSource::create(
    const std::vector<std::string>& ignored) {
  auto queue = FanotifyQueue::open();
  if (!queue) return nullptr;
  // What counts is whether a mark can be set and a handle opened, not who the process is.
  const FileDescriptor top(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
  std::vector<std::byte> storage;
  const auto handle = handleOf(top, storage);
  const FileDescriptor base(::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!handle || !queue->markFileSystem(top)) return nullptr;
  const FileDescriptor reopened(::open_by_handle_at(
      base.get(), reinterpret_cast<file_handle*>(storage.data()), O_PATH | O_CLOEXEC));
  if (!reopened) return nullptr;
  queue = FanotifyQueue::open();  // one without the mark
  return queue ? std::make_unique<FileSystemMarkSource>(std::move(*queue), ignored) : nullptr;
}

bool FileSystemMarkSource::follow(const std::string& path, const EntryState& state,
                                  ChangeSink& /*sink*/) {
  const std::scoped_lock lock(mutex_);
  auto& mount = mounts_[state.mount];
  // An entrance is always marked anew: another file system may be mounted there under the number of
  // one that is gone.
  if (!mount.leadsTo(path) || mount.isEntrance(path)) enter(mount, path, state.isBehindLink);
  if (mount.isMarked) ++mount.folders;
  return mount.isMarked;
}

/// With the mutex held.
void FileSystemMarkSource::enter(Mount& mount, const std::string& path, bool isBehindLink) {
  ++timesEntered_;
  const auto folder = openFolder(path, isBehindLink);
  struct statfs status{};
  if (!folder || ::fstatfs(folder.get(), &status) != 0) return;
  mount.fileSystem = status.f_fsid;
  mount.isMarked = queue_.markFileSystem(folder);
  if (!mount.isEntrance(path)) {
    auto realPath = withoutTrailingSlashes(platform::pathOf(folder).value_or(path));
    mount.entrances.push_back({.path = path, .realPath = std::move(realPath)});
  }
  ignoreOwn();
}

void FileSystemMarkSource::ignoreOwn() const {
  for (const auto& own : ignored_) {
    if (const auto folder = openFolder(own, /*followsLink=*/true)) queue_.ignoreFolder(folder);
  }
}

bool FileSystemMarkSource::Mount::isEntrance(const std::string& path) const {
  return std::ranges::find(entrances, path, &Entrance::path) != entrances.end();
}

bool FileSystemMarkSource::Mount::leadsTo(const std::string& path) const {
  return std::ranges::any_of(
      entrances, [&path](const auto& entrance) { return isAtOrBelow(entrance.path, path); });
}

bool FileSystemMarkSource::tellsOf(const std::string& path) const {
  const auto state = examineTarget(std::string(parentOf(path)));
  const std::scoped_lock lock(mutex_);
  const auto found = mounts_.find(state.mount);
  return state.isPresent() && found != mounts_.end() && found->second.isMarked;
}

std::size_t FileSystemMarkSource::followedFolders() const {
  const std::scoped_lock lock(mutex_);
  return std::accumulate(
      mounts_.begin(), mounts_.end(), std::size_t{0},
      [](std::size_t sum, const auto& entry) { return sum + entry.second.folders; });
}

void FileSystemMarkSource::readChanges(ChangeSink& sink) {
  queue_.read(
      [&](const FanotifyEvent& event) {
        for (const auto& path : pathsOf(event.folder)) sink.folderChanged(event.describe(path));
        if (event.movesFolders()) resolved_.clear();
      },
      [&] {
        resolved_.clear();
        sink.changesLost();
      });
}

/// What was nowhere, or in fewer places, may be seen through another entrance now.
void FileSystemMarkSource::forgetIfEntered() {
  const std::scoped_lock lock(mutex_);
  if (std::exchange(resolvedAfter_, timesEntered_) != timesEntered_) resolved_.clear();
}

const FileSystemMarkSource::Paths& FileSystemMarkSource::pathsOf(const FolderHandle& folder) {
  forgetIfEntered();
  constexpr std::size_t kMaxRemembered = 10'000;
  if (resolved_.size() >= kMaxRemembered) resolved_.clear();
  const auto [entry, isNew] = resolved_.try_emplace(folder.key());
  if (isNew) entry->second = resolve(folder);
  return entry->second;
}

/// The folder can be seen at another path through every mount and every entrance.
FileSystemMarkSource::Paths FileSystemMarkSource::resolve(const FolderHandle& folder) const {
  Paths paths;
  const std::scoped_lock lock(mutex_);
  for (const auto& [number, mount] : mounts_) {
    if (!mount.isMarked || !isSame(mount.fileSystem, folder.fileSystem)) continue;
    const auto path = pathIn(mount.entrances, folder);
    if (!path) continue;
    for (const auto& entrance : mount.entrances) {
      if (!isAtOrBelow(entrance.realPath, *path)) continue;
      auto given = entrance.path + path->substr(entrance.realPath.size());
      if (std::ranges::find(paths, given) == paths.end()) paths.push_back(std::move(given));
    }
  }
  return paths;
}

/// The kernel's path of the folder, as seen through the mount that these lead to.
std::optional<std::string> FileSystemMarkSource::pathIn(const std::vector<Entrance>& entrances,
                                                        const FolderHandle& folder) {
  std::vector<std::byte> handle(folder.handle.begin(), folder.handle.end());
  for (const auto& entrance : entrances) {
    const auto& name = entrance.path.empty() ? kTop : entrance.path;
    const FileDescriptor base(::open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!base) continue;
    const FileDescriptor place(::open_by_handle_at(
        base.get(), reinterpret_cast<file_handle*>(handle.data()), O_PATH | O_CLOEXEC));
    if (place && !isRemoved(place)) return platform::pathOf(place);
  }
  return std::nullopt;
}

}  // namespace zelnor::platform
