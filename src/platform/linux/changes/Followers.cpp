#include "platform/linux/changes/Followers.h"

#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <numeric>
#include <utility>

#include "platform/linux/changes/FileSystemMarkSource.h"
#include "platform/linux/changes/FolderMarkSource.h"
#include "platform/linux/changes/InotifySource.h"

namespace zelnor::platform {

namespace {

// These have no name in linux/magic.h; see statfs(2).
constexpr long kCifsMagic = 0xFF534D42;
constexpr long kSmb2Magic = 0xFE534D42;
constexpr long kFuseMagic = 0x65735546;
constexpr long kCephMagic = 0x00C36400;

constexpr std::array<long, 8> kRemoteFileSystems{NFS_SUPER_MAGIC, SMB_SUPER_MAGIC, kCifsMagic,
                                                 kSmb2Magic,      kFuseMagic,      kCephMagic,
                                                 V9FS_MAGIC,      AFS_SUPER_MAGIC};

/// Whether others than this machine's kernel may change what is there.
bool isRemote(const std::string& path) {
  struct statfs status{};
  return ::statfs(path.empty() ? "/" : path.c_str(), &status) == 0 &&
         std::ranges::find(kRemoteFileSystems, status.f_type) != kRemoteFileSystems.end();
}

/// Half of what the user may have, by the file in /proc that says how much that is.
std::size_t fairShare(const char* allowance) {
  constexpr std::size_t kUsual = 8192;
  std::size_t all = kUsual;
  std::ifstream(allowance) >> all;
  return all / 2;
}

}  // namespace

bool Followers::follow(const std::string& path, bool isRoot, ChangeSink& sink) {
  const auto state = isRoot ? examineTarget(path) : examine(path);
  if (!state.isFolder()) return true;
  const bool isLive = followLive(path, state, sink);
  const bool isListable = canLookInto(path);
  // Of a folder that cannot be listed only the permissions matter, and its own times.
  const bool isWatchedEnough = isListable ? isLive && !isRemote(path) : isToldOf(path);
  if (isWatchedEnough) {
    swept_.remove(path);
  } else {
    swept_.add(path, state);
  }
  return isListable;
}

bool Followers::followLive(const std::string& path, const EntryState& state, ChangeSink& sink) {
  return std::ranges::any_of(sources_,
                             [&](const auto& source) { return source->follow(path, state, sink); });
}

void Followers::detach(const std::string& path) {
  for (const auto& source : sources_) source->detach(path);
  swept_.removeTree(path);
}

void Followers::releaseDetached() {
  for (const auto& source : sources_) source->releaseDetached();
}

bool Followers::isToldOf(const std::string& path) const {
  return std::ranges::any_of(sources_, [&](const auto& source) { return source->tellsOf(path); });
}

std::size_t Followers::followedFolders() const {
  return std::accumulate(
      sources_.begin(), sources_.end(), std::size_t{0},
      [](std::size_t sum, const auto& source) { return sum + source->followedFolders(); });
}

std::vector<std::unique_ptr<ChangeSource>> openSources(const ChangeStreamOptions& options) {
  const auto isWanted = [&options](ChangeSourceKind kind) {
    return !options.forcedSource || options.forcedSource == kind;
  };
  const auto share = [&options](const char* allowance) {
    return options.watchLimit.value_or(fairShare(allowance));
  };
  std::vector<std::unique_ptr<ChangeSource>> sources;
  const auto add = [&sources](std::unique_ptr<ChangeSource> source) {
    if (source) sources.push_back(std::move(source));
  };
  if (isWanted(ChangeSourceKind::fileSystemMark))
    add(FileSystemMarkSource::create(options.ownPaths));
  if (isWanted(ChangeSourceKind::folderMarks)) {
    add(FolderMarkSource::create(share("/proc/sys/fs/fanotify/max_user_marks")));
  }
  if (isWanted(ChangeSourceKind::inotify)) {
    add(InotifySource::create(share("/proc/sys/fs/inotify/max_user_watches")));
  }
  return sources;
}

}  // namespace zelnor::platform
