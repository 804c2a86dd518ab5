#include "platform/linux/changes/HiddenNames.h"

#include <algorithm>
#include <cstddef>

namespace zelnor::platform {

void HiddenNames::add(const std::string& path, std::uint64_t inode) {
  constexpr std::size_t kMaxNames = 10'000;
  const std::scoped_lock lock(mutex_);
  if (names_.size() < kMaxNames) names_.emplace(inode, path);
}

std::optional<std::uint64_t> HiddenNames::inodeOf(const std::string& path) const {
  const std::scoped_lock lock(mutex_);
  const auto found = std::ranges::find(names_, path, &Name::second);
  return found == names_.end() ? std::nullopt : std::optional(found->first);
}

std::vector<std::string> HiddenNames::take(std::uint64_t inode) {
  const std::scoped_lock lock(mutex_);
  std::vector<std::string> paths;
  const auto first = names_.lower_bound({inode, std::string()});
  auto last = first;
  for (; last != names_.end() && last->first == inode; ++last) paths.push_back(last->second);
  names_.erase(first, last);
  return paths;
}

}  // namespace zelnor::platform
