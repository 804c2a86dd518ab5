#include "platform/linux/changes/EntryState.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/EntryStatus.h"
#include "platform/linux/LongPath.h"

namespace zelnor::platform {

namespace {

constexpr unsigned kStateFields = STATX_BASIC_STATS | STATX_MNT_ID;
constexpr int kStateFlags = AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

bool isReadable(const ShortPath& place, const struct statx& status) {
  const auto user = ::geteuid();
  if (user == 0 || S_ISLNK(status.stx_mode)) return true;
  if (status.stx_uid == user) return (status.stx_mode & S_IRUSR) != 0;
  return ::faccessat(place.folderOrCurrent(), place.rest, R_OK, AT_EACCESS) == 0;
}

EntryState::Presence presenceAfter(int error) {
  return error == ENOENT || error == ENOTDIR ? EntryState::Presence::gone
                                             : EntryState::Presence::unknown;
}

EntryState look(const std::string& path, int followFlags) {
  EntryState state;
  const auto place = shorten(path);
  if (place.rest == nullptr) {
    state.presence = presenceAfter(errno);
    return state;
  }
  struct statx status{};
  const char* const rest = path.empty() ? "/" : place.rest;
  if (::statx(place.folderOrCurrent(), rest, kStateFlags | followFlags, kStateFields, &status) !=
      0) {
    state.presence = presenceAfter(errno);
    return state;
  }
  state.presence = EntryState::Presence::present;
  state.isReadable = path.empty() || isReadable(place, status);
  state.hasOtherNames = hasOtherNames(status);
  state.attributes = attributesFrom(status);
  state.isMountPoint = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
  state.mount = status.stx_mnt_id;
  state.statusChange = status.stx_ctime.tv_sec * kNanosecondsPerSecond + status.stx_ctime.tv_nsec;
  return state;
}

}  // namespace

EntryState examine(const std::string& path) { return look(path, AT_SYMLINK_NOFOLLOW); }

EntryState examineTarget(const std::string& path) {
  auto state = examine(path);
  if (!state.isPresent() || !state.attributes.isSymlink) return state;
  state = look(path, /*followFlags=*/0);
  state.isBehindLink = true;
  return state;
}

bool canLookInto(const std::string& path) {
  if (path.empty()) return true;
  const auto place = shorten(path);
  return place.rest != nullptr &&
         ::faccessat(place.folderOrCurrent(), place.rest, R_OK | X_OK, AT_EACCESS) == 0;
}

EntryKind kindOf(const FileAttributes& attributes) {
  if (attributes.isSymlink) return EntryKind::link;
  return attributes.isDirectory ? EntryKind::folder : EntryKind::file;
}

FileDescriptor openFolder(const std::string& path, bool followsLink) {
  const int flags = O_PATH | O_DIRECTORY | O_CLOEXEC | (followsLink ? 0 : O_NOFOLLOW);
  if (path.empty()) return FileDescriptor(::open("/", flags));
  const auto place = shorten(path);
  if (place.rest == nullptr) return {};
  return FileDescriptor(::openat(place.folderOrCurrent(), place.rest, flags));
}

}  // namespace zelnor::platform
