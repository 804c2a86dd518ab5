#pragma once

#include <sys/stat.h>

#include <optional>

#include "platform/FileAttributes.h"

namespace zelnor::platform {

/// The status of one entry as the kernel gives it, statx(2): type, mode, owner, links, size,
/// modification time, inode and device, and whether it is a mount point. Links are not followed,
/// automount points not mounted, and a network file system answers with what it knows. Nothing if
/// the entry is not there.
std::optional<struct statx> readStatus(int folder, const char* name);
/// The status of what `descriptor` is open on.
std::optional<struct statx> readStatus(int descriptor);

FileAttributes attributesFrom(const struct statx& status);
/// Whether it has several hard links; a folder has none, a symbolic link may.
bool hasOtherNames(const struct statx& status);

}  // namespace zelnor::platform
