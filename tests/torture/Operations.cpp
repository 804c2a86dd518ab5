#include "tests/torture/Operations.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

// Most operations may fail, for want of what they work on; that is part of the game.

namespace zelnor::test {

namespace {

namespace fs = std::filesystem;

/// Few, so that they meet; neighbours of '/' in byte order, what is not UTF-8, what is not pretty.
const std::array<std::string, 10> kNames{
    "a",       "a.txt",   "a-b",        "b",        "B",
    "\xFFq\n", ".hidden", "bundle.app", "\xC3\xA9", std::string(255, 'x')};

}  // namespace

Operations::Operations(std::uint64_t seed, std::vector<std::string> roots, std::string outside)
    : random_(seed), roots_(std::move(roots)), outside_(std::move(outside)) {}

int Operations::pick(int n) { return static_cast<int>(random_() % static_cast<std::uint64_t>(n)); }

std::string Operations::path() {
  auto path = roots_[static_cast<std::size_t>(pick(static_cast<int>(roots_.size())))];
  constexpr int kMaxDepth = 4;
  for (int left = 1 + pick(kMaxDepth); left > 0; --left) {
    path += '/' + kNames.at(static_cast<std::size_t>(pick(static_cast<int>(kNames.size()))));
    std::error_code ignored;
    if (left > 1 && !fs::is_directory(path, ignored)) break;
  }
  return path;
}

std::string Operations::anywhere() {
  constexpr int kOutsideNames = 5;
  return pick(4) == 0 ? outside_ + '/' + std::to_string(pick(kOutsideNames)) : path();
}

void Operations::runOne() {
  using Operation = void (Operations::*)();
  static constexpr std::array<Operation, 24> kOperations{
      &Operations::createFile,    &Operations::createFile, &Operations::createFile,
      &Operations::append,        &Operations::append,     &Operations::truncate,
      &Operations::changeTimes,   &Operations::changeMode, &Operations::remove,
      &Operations::remove,        &Operations::removeAll,  &Operations::rename,
      &Operations::rename,        &Operations::rename,     &Operations::rename,
      &Operations::exchange,      &Operations::exchange,   &Operations::replaceByFolder,
      &Operations::replaceByFile, &Operations::linkHard,   &Operations::linkSymbolically,
      &Operations::createTree,    &Operations::createTree, &Operations::burst};
  const auto next = kOperations.at(static_cast<std::size_t>(pick(kOperations.size())));
  (this->*next)();
}

void Operations::createFile() {
  const auto target = path();
  if (std::ofstream(target) << std::string(static_cast<std::size_t>(pick(100)), 'c')) {
    noteChange(target);
  }
}

void Operations::append() {
  const auto target = path();
  if (std::ofstream(target, std::ios::app) << "more") noteChange(target);
}

void Operations::truncate() {
  const auto size = pick(50);
  const auto target = path();
  if (::truncate(target.c_str(), size) == 0) noteChange(target);
}

void Operations::changeTimes() {
  constexpr int kSpan = 2'000'000'000;
  const timespec time{.tv_sec = pick(kSpan) - 1000, .tv_nsec = pick(999'999'999)};
  // The kernel tells of a modification time that is set alone in another way.
  const timespec kept{.tv_sec = 0, .tv_nsec = UTIME_OMIT};
  const std::array<timespec, 2> times{pick(2) == 0 ? kept : time, time};
  const auto target = path();
  const int result = ::utimensat(AT_FDCWD, target.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
  if (result == 0) noteChange(target);
}

void Operations::changeMode() {
  static constexpr std::array<mode_t, 6> kModes{0, 0111, 0444, 0755, 0755, 0700};
  const auto target = path();
  ::chmod(target.c_str(), kModes.at(static_cast<std::size_t>(pick(kModes.size()))));
  // Most are soon readable again, or little would be left to work on.
  if (pick(3) != 0) ::chmod(target.c_str(), 0755);
  noteChange(target);
}

void Operations::remove() { ::remove(path().c_str()); }

void Operations::removeAll() {
  const auto target = path();
  if (pick(3) == 0) removeTree(target);
}

void Operations::rename() {
  const auto from = anywhere();
  ::rename(from.c_str(), anywhere().c_str());
}

void Operations::exchange() {
  const auto from = anywhere();
  ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, anywhere().c_str(), RENAME_EXCHANGE);
}

void Operations::replaceByFolder() {
  const auto target = path();
  if (::unlink(target.c_str()) == 0) fill(target, /*depth=*/1);
}

void Operations::replaceByFile() {
  const auto target = path();
  removeTree(target);
  std::ofstream(target) << "file";
}

void Operations::linkSymbolically() {
  const auto target = path();
  if (pick(2) == 0) ::unlink(target.c_str());
  ::symlink(std::to_string(pick(1000)).c_str(), target.c_str());
}

void Operations::linkHard() {
  const auto from = path();
  const auto to = path();
  ::link(from.c_str(), to.c_str());
}

void Operations::createTree() {
  constexpr int kMaxDepth = 3;
  fill(path(), 1 + pick(kMaxDepth));
}

void Operations::fill(const std::string& folder, int depth) {
  if (::mkdir(folder.c_str(), 0755) != 0) return;
  constexpr int kMaxEntries = 4;
  for (int left = pick(kMaxEntries); left >= 0; --left) {
    const auto name = folder + '/' + kNames.at(static_cast<std::size_t>(pick(kNames.size())));
    if (depth > 0 && pick(2) == 0) {
      fill(name, depth - 1);
    } else {
      std::ofstream(name) << "x";
    }
  }
}

void Operations::burst() {
  if (pick(10) != 0) return;
  constexpr int kFiles = 800;
  const auto folder = path();
  ::mkdir(folder.c_str(), 0755);
  for (int i = 0; i < kFiles; ++i) std::ofstream(folder + "/burst" + std::to_string(i)) << "y";
  for (int i = 0; i < kFiles; i += 2) ::unlink((folder + "/burst" + std::to_string(i)).c_str());
  if (pick(2) == 0) removeTree(folder);
}

void Operations::noteChange(const std::string& path) {
  struct stat status{};
  if (::lstat(path.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) return;
  if (status.st_nlink > 1) changedBy_[status.st_ino] = path;
}

std::set<std::uint64_t> Operations::changedUnseen() const {
  std::set<std::uint64_t> unseen;
  for (const auto& [inode, path] : changedBy_) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0 || status.st_ino != inode) unseen.insert(inode);
  }
  return unseen;
}

void Operations::overflow() {
  constexpr int kFiles = 9000;
  const auto folder = roots_.front() + "/flood";
  ::mkdir(folder.c_str(), 0755);
  for (int i = 0; i < kFiles; ++i) std::ofstream(folder + "/f" + std::to_string(i)) << "z";
  constexpr int kOperationsAfter = 100;
  for (int i = 0; i < kOperationsAfter; ++i) runOne();
  if (pick(2) == 0) removeTree(folder);
}

void removeTree(const std::string& folder) {
  std::error_code ignored;
  if (!fs::is_directory(fs::symlink_status(folder, ignored))) {
    fs::remove(folder, ignored);
    return;
  }
  ::chmod(folder.c_str(), 0755);
  for (fs::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored)) {
    removeTree(entry->path().string());
  }
  ::rmdir(folder.c_str());
}

}  // namespace zelnor::test
