#include "bench/TreeMaker.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/FileDescriptor.h"

namespace zelnor::bench {
namespace {

using platform::FileDescriptor;
using Times = std::array<timespec, 2>;

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

Times timesOf(const PlannedEntry& entry) {
  const timespec time{.tv_sec = entry.mtime, .tv_nsec = entry.nanoseconds};
  return {time, time};
}

FileDescriptor openFolder(int parent, const std::string& name) {
  FileDescriptor folder(
      openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder) fail(name);
  return folder;
}

/// The folders from the root to where the tree grows. A folder gets its time when it is left:
/// filling it changes it.
class OpenFolders {
 public:
  explicit OpenFolders(FileDescriptor root) { folders_.push_back({std::move(root), {}}); }

  [[nodiscard]] int innermost() const { return folders_.back().descriptor.get(); }
  void enter(const PlannedEntry& entry) {
    folders_.push_back({openFolder(innermost(), entry.name), timesOf(entry)});
  }
  /// Leaves folders until `depth` of them are left below the root.
  void leaveTo(std::size_t depth) {
    while (folders_.size() > depth + 1) {
      if (futimens(innermost(), folders_.back().times.data()) != 0) fail("futimens");
      folders_.pop_back();
    }
  }

 private:
  struct Folder {
    FileDescriptor descriptor;
    Times times;
  };
  std::vector<Folder> folders_;
};

void makeFile(int parent, const PlannedEntry& entry) {
  constexpr mode_t kMode = 0644;
  const FileDescriptor file(
      openat(parent, entry.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode));
  if (!file) fail(entry.name);
  if (entry.size > 0 && ftruncate(file.get(), entry.size) != 0) fail(entry.name);
  if (futimens(file.get(), timesOf(entry).data()) != 0) fail(entry.name);
}

void makeLink(int parent, const PlannedEntry& entry) {
  if (symlinkat(entry.target.c_str(), parent, entry.name.c_str()) != 0) fail(entry.name);
  if (utimensat(parent, entry.name.c_str(), timesOf(entry).data(), AT_SYMLINK_NOFOLLOW) != 0)
    fail(entry.name);
}

void makeFolder(int parent, const PlannedEntry& entry) {
  constexpr mode_t kMode = 0755;
  if (mkdirat(parent, entry.name.c_str(), kMode) != 0) fail(entry.name);
}

}  // namespace

std::uint64_t makeTree(const std::string& folder, TreePlan plan) {
  std::filesystem::create_directories(folder);
  if (!std::filesystem::is_empty(folder)) {
    throw std::system_error(std::make_error_code(std::errc::directory_not_empty), folder);
  }
  OpenFolders folders(openFolder(AT_FDCWD, folder));
  std::uint64_t made = 0;
  for (; const auto entry = plan.next(); ++made) {
    folders.leaveTo(entry->depth);
    switch (entry->kind) {
      case PlannedEntry::Kind::file:
        makeFile(folders.innermost(), *entry);
        break;
      case PlannedEntry::Kind::link:
        makeLink(folders.innermost(), *entry);
        break;
      case PlannedEntry::Kind::folder:
        makeFolder(folders.innermost(), *entry);
        folders.enter(*entry);
        break;
    }
  }
  folders.leaveTo(0);
  return made;
}

}  // namespace zelnor::bench
