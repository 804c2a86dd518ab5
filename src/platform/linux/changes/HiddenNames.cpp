#include "platform/linux/changes/HiddenNames.h"

#include <cstddef>

namespace zelnor::platform {

void HiddenNames::add(const std::string& path, std::uint64_t inode) {
  constexpr std::size_t kMaxNames = 10'000;
  const std::scoped_lock lock(mutex_);
  erase(path);
  if (names_.size() >= kMaxNames) return;
  inodes_.emplace(path, inode);
  names_.emplace(inode, path);
}

void HiddenNames::forget(const std::string& path) {
  const std::scoped_lock lock(mutex_);
  erase(path);
}

/// With the mutex held.
void HiddenNames::erase(const std::string& path) {
  const auto found = inodes_.find(path);
  if (found == inodes_.end()) return;
  names_.erase({found->second, path});
  inodes_.erase(found);
}

std::optional<std::uint64_t> HiddenNames::inodeOf(const std::string& path) const {
  const std::scoped_lock lock(mutex_);
  const auto found = inodes_.find(path);
  return found == inodes_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::string> HiddenNames::namesOf(std::uint64_t inode) const {
  const std::scoped_lock lock(mutex_);
  std::vector<std::string> paths;
  for (auto name = names_.lower_bound({inode, std::string()});
       name != names_.end() && name->first == inode; ++name) {
    paths.push_back(name->second);
  }
  return paths;
}

}  // namespace zelnor::platform
