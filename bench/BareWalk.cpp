#include "bench/BareWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <memory>
#include <string_view>

namespace zelnor::bench {
namespace {

struct DirectoryCloser {
  void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryCloser>;

Directory openDirectory(int parent, const char* name) {
  const int descriptor = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  return Directory(descriptor < 0 ? nullptr : fdopendir(descriptor));
}

bool isSelfOrParent(std::string_view name) { return name == "." || name == ".."; }

// Recursion is as deep as the tree, and the tree is our own: no need to be careful here, only to be
// fast.
void walk(const Directory& directory, WalkTotals& totals) {
  if (!directory) return;
  const int descriptor = dirfd(directory.get());
  while (const auto* entry = readdir(directory.get())) {
    const auto* const name = static_cast<const char*>(entry->d_name);
    if (isSelfOrParent(name)) continue;
    struct stat attributes{};
    if (fstatat(descriptor, name, &attributes, AT_SYMLINK_NOFOLLOW) != 0) continue;
    ++totals.entries;
    if (S_ISREG(attributes.st_mode)) totals.bytes += attributes.st_size;
    if (S_ISDIR(attributes.st_mode)) walk(openDirectory(descriptor, name), totals);
  }
}

}  // namespace

WalkTotals bareWalk(const std::string& folder) {
  WalkTotals totals;
  walk(openDirectory(AT_FDCWD, folder.c_str()), totals);
  return totals;
}

}  // namespace zelnor::bench
