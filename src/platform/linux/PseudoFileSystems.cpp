#include "platform/linux/PseudoFileSystems.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>

#include "platform/FileDescriptor.h"

namespace zelnor::platform {

namespace {

// These have no name in linux/magic.h; statfs(2) lists some, the kernel's sources the others.
constexpr long kConfigFsMagic = 0x62656570;
constexpr long kFuseControlMagic = 0x65735543;
constexpr long kMessageQueueMagic = 0x19800202;
constexpr long kRpcPipeMagic = 0x67596969;

constexpr std::array<long, 22> kPseudoFileSystems{
    AUTOFS_SUPER_MAGIC,  BINFMTFS_MAGIC,       BPF_FS_MAGIC,       CGROUP_SUPER_MAGIC,
    CGROUP2_SUPER_MAGIC, DEBUGFS_MAGIC,        DEVPTS_SUPER_MAGIC, EFIVARFS_MAGIC,
    HUGETLBFS_MAGIC,     NSFS_MAGIC,           PROC_SUPER_MAGIC,   PSTOREFS_MAGIC,
    SECURITYFS_MAGIC,    SELINUX_MAGIC,        SMACK_MAGIC,        SYSFS_MAGIC,
    TRACEFS_MAGIC,       BINDERFS_SUPER_MAGIC, kConfigFsMagic,     kFuseControlMagic,
    kMessageQueueMagic,  kRpcPipeMagic};

}  // namespace

bool isOnPseudoFileSystem(int descriptor) {
  struct statfs status{};
  return ::fstatfs(descriptor, &status) == 0 &&
         std::ranges::find(kPseudoFileSystems, status.f_type) != kPseudoFileSystems.end();
}

bool isOnPseudoFileSystem(int folder, const char* name) {
  // O_PATH without O_DIRECTORY is what leaves an automount point as it is, see open(2).
  const FileDescriptor place(::openat(folder, name, O_PATH | O_NOFOLLOW | O_CLOEXEC));
  return place && isOnPseudoFileSystem(place.get());
}

}  // namespace zelnor::platform
