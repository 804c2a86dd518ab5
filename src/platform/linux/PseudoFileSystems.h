#pragma once

namespace zelnor::platform {

/// Whether `descriptor` is open on a file system that shows the kernel's state (proc, sysfs, cgroup
/// and the like) or mounts on access (autofs) rather than holding files.
bool isOnPseudoFileSystem(int descriptor);

/// As above for the folder `name` in `folder`, without mounting anything that waits there.
bool isOnPseudoFileSystem(int folder, const char* name);

}  // namespace zelnor::platform
