#include "platform/linux/EntryStatus.h"

#include <fcntl.h>
#include <sys/sysmacros.h>

namespace zelnor::platform {

namespace {

constexpr unsigned kWanted =
    STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_UID | STATX_SIZE | STATX_MTIME | STATX_INO;
constexpr int kQuietly = AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;

}  // namespace

std::optional<struct statx> readStatus(int folder, const char* name) {
  std::optional<struct statx> status(std::in_place);
  if (::statx(folder, name, kQuietly, kWanted, &*status) != 0) status.reset();
  return status;
}

std::optional<struct statx> readStatus(int descriptor) {
  std::optional<struct statx> status(std::in_place);
  if (::statx(descriptor, "", kQuietly | AT_EMPTY_PATH, kWanted, &*status) != 0) status.reset();
  return status;
}

FileAttributes attributesFrom(const struct statx& status) {
  FileAttributes attributes;
  attributes.isDirectory = S_ISDIR(status.stx_mode);
  attributes.isSymlink = S_ISLNK(status.stx_mode);
  attributes.size = attributes.isDirectory ? 0 : static_cast<std::int64_t>(status.stx_size);
  attributes.mtime = truncatedSeconds(status.stx_mtime.tv_sec, status.stx_mtime.tv_nsec);
  attributes.inode = status.stx_ino;
  attributes.device = makedev(status.stx_dev_major, status.stx_dev_minor);
  return attributes;
}

bool hasOtherNames(const struct statx& status) {
  return !S_ISDIR(status.stx_mode) && status.stx_nlink > 1;
}

}  // namespace zelnor::platform
