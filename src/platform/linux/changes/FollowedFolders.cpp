#include "platform/linux/changes/FollowedFolders.h"

#include <algorithm>
#include <bit>

namespace zelnor::platform {

std::int32_t watchRank(std::string_view path, std::int64_t age) {
  constexpr std::int64_t kHour = 3600;
  const auto depth = std::ranges::count(path, '/');
  const auto hours = static_cast<std::uint64_t>(std::max<std::int64_t>(age, 0) / kHour);
  return static_cast<std::int32_t>(depth) + static_cast<std::int32_t>(std::bit_width(hours) / 2);
}

bool FollowedFolders::admits(const std::string& path, std::int32_t rank) {
  const std::scoped_lock lock(mutex_);
  if (tree_.size() < limit_ || tree_.keyAt(path) != WatchedTree::kNoKey) return true;
  const auto last = worst();
  return last && rank < last->first;
}

std::optional<FollowedFolders::Folder> FollowedFolders::add(const std::string& path, Key key,
                                                            std::int32_t rank) {
  const std::scoped_lock lock(mutex_);
  tree_.attach(path, key, rank);
  if (!ranking_.empty()) ranking_.emplace(rank, key);
  return tree_.size() > limit_ ? takeWorst() : std::nullopt;
}

std::optional<FollowedFolders::Folder> FollowedFolders::makeRoom(std::int32_t rank) {
  const std::scoped_lock lock(mutex_);
  limit_ = tree_.size();
  const auto last = worst();
  return last && rank < last->first ? takeWorst() : std::nullopt;
}

void FollowedFolders::erase(Key key) {
  const std::scoped_lock lock(mutex_);
  tree_.erase(key);
}

void FollowedFolders::detach(const std::string& path) {
  const std::scoped_lock lock(mutex_);
  tree_.detach(path);
}

std::vector<FollowedFolders::Key> FollowedFolders::takeDetached() {
  const std::scoped_lock lock(mutex_);
  return tree_.takeDetached();
}

std::optional<std::string> FollowedFolders::pathOf(Key key) const {
  const std::scoped_lock lock(mutex_);
  return tree_.pathOf(key);
}

bool FollowedFolders::contains(const std::string& path) const {
  const std::scoped_lock lock(mutex_);
  return tree_.keyAt(path) != WatchedTree::kNoKey;
}

std::size_t FollowedFolders::size() const {
  const std::scoped_lock lock(mutex_);
  return tree_.size();
}

std::optional<FollowedFolders::Ranked> FollowedFolders::worst() {
  const auto isOutOfDate = [this](const Ranked& ranked) {
    return !tree_.contains(ranked.second) || tree_.rankOf(ranked.second) != ranked.first;
  };
  constexpr std::size_t kMaxPerFolder = 4;
  if (ranking_.empty() || ranking_.size() > kMaxPerFolder * tree_.size()) order();
  while (!ranking_.empty() && isOutOfDate(ranking_.top())) ranking_.pop();
  return ranking_.empty() ? std::nullopt : std::optional(ranking_.top());
}

std::optional<FollowedFolders::Folder> FollowedFolders::takeWorst() {
  const auto last = worst();
  if (!last) return std::nullopt;
  ranking_.pop();
  Folder folder{.key = last->second, .path = tree_.pathOf(last->second).value_or("")};
  tree_.erase(last->second);
  return folder;
}

void FollowedFolders::order() {
  std::vector<Ranked> all;
  all.reserve(tree_.size());
  for (const auto key : tree_.keys()) all.emplace_back(tree_.rankOf(key), key);
  ranking_ = std::priority_queue<Ranked>(all.begin(), all.end());
}

}  // namespace zelnor::platform
