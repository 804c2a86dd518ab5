#include "tests/torture/Walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string_view>

namespace zelnor::test {

namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

FileKind kindOf(const struct stat& status) {
  if (S_ISLNK(status.st_mode)) return FileKind::symlink;
  return S_ISDIR(status.st_mode) ? FileKind::directory : FileKind::file;
}

bool isReadable(const std::string& path, const struct stat& status) {
  return S_ISLNK(status.st_mode) || ::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) == 0;
}

FileRecord recordOf(const std::string& path, const struct stat& status) {
  return {.id = 0,
          .name = path.substr(path.rfind('/') + 1),
          .path = path,
          .size = S_ISDIR(status.st_mode) ? 0 : status.st_size,
          .mtime = status.st_mtim.tv_sec < 0 && status.st_mtim.tv_nsec > 0
                       ? status.st_mtim.tv_sec + 1
                       : status.st_mtim.tv_sec,
          .kind = kindOf(status),
          .inode = static_cast<std::int64_t>(status.st_ino)};
}

void walk(const std::string& folder, Walk& found) {
  const std::unique_ptr<DIR, CloseFolder> listing(::opendir(folder.c_str()));
  if (!listing) {
    found.unknown.insert(folder);
    return;
  }
  while (const auto* const entry = ::readdir(listing.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    const auto path = folder + '/' + entry->d_name;
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0) {
      if (errno == EACCES) found.unknown.insert(folder);
      continue;
    }
    if (isReadable(path, status)) found.rows.emplace(path, recordOf(path, status));
    if (S_ISDIR(status.st_mode)) walk(path, found);
  }
}

bool isBelowAny(const std::string& path, const auto& folders) {
  return std::ranges::any_of(
      folders, [&path](const auto& folder) { return path.starts_with(folder + '/'); });
}

std::string describe(const char* what, const FileRecord& row) {
  std::ostringstream text;
  text << "  " << what << ' ' << row.path << " size " << row.size << " mtime " << row.mtime
       << " kind " << static_cast<int>(row.kind) << " inode " << row.inode;
  if (struct stat status{}; ::lstat(row.path.c_str(), &status) == 0) {
    text << " links " << status.st_nlink;
  }
  text << '\n';
  return text.str();
}

}  // namespace

Walk Walk::of(const std::vector<std::string>& roots) {
  Walk found;
  for (const auto& root : roots) walk(root, found);
  return found;
}

std::string difference(const Walk& disk, const Rows& index,
                       const std::vector<std::string>& ignored) {
  constexpr int kMaxShown = 12;
  std::string text;
  int count = 0;
  const auto note = [&](const char* what, const FileRecord& row) {
    if (isBelowAny(row.path, disk.unknown) || isBelowAny(row.path, ignored)) return;
    if (++count <= kMaxShown) text += describe(what, row);
  };
  for (const auto& [path, row] : disk.rows) {
    const auto known = index.find(path);
    if (known == index.end()) {
      note("missing in the index:", row);
    } else if (known->second != row) {
      note("on disk:     ", row);
      note("in the index:", known->second);
    }
  }
  for (const auto& [path, row] : index) {
    if (!disk.rows.contains(path)) note("not on disk:", row);
  }
  return text;
}

}  // namespace zelnor::test
