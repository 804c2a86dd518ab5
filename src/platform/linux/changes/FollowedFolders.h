#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <queue>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/changes/EntryState.h"
#include "platform/linux/changes/WatchedTree.h"

namespace zelnor::platform {

/// How much it matters to follow a folder live: less is more. Shallow folders and those that
/// changed not long ago come first; a folder that is one level deeper weighs as much as one that
/// has rested four times as long. `age` in seconds.
std::int32_t watchRank(std::string_view path, std::int64_t age);

/// The folders that one source follows, and how many it may follow. Thread-safe.
class FollowedFolders {
 public:
  using Key = WatchedTree::Key;
  struct Folder {
    Key key = WatchedTree::kNoKey;
    std::string path;
  };

  explicit FollowedFolders(std::size_t limit) : limit_(limit) {}

  /// Whether there is room for the folder, or it is followed already, or matters more than another.
  bool admits(const std::string& path, std::int32_t rank);
  /// Adds or moves a folder; if there are too many now, takes out the one that matters least.
  std::optional<Folder> add(const std::string& path, Key key, std::int32_t rank);
  /// The system allows no more than there are. Takes out the folder that matters least, if it
  /// matters less than `rank`.
  std::optional<Folder> makeRoom(std::int32_t rank);

  void erase(Key key);
  void detach(const std::string& path);
  std::vector<Key> takeDetached();

  [[nodiscard]] std::optional<std::string> pathOf(Key key) const;
  [[nodiscard]] bool contains(const std::string& path) const;
  [[nodiscard]] std::size_t size() const;

 private:
  using Ranked = std::pair<std::int32_t, Key>;

  std::optional<Ranked> worst();
  std::optional<Folder> takeWorst();
  void order();

  mutable std::mutex mutex_;
  std::size_t limit_;
  WatchedTree tree_;
  /// Only while the limit is reached; may hold folders that are gone or have another rank now.
  std::priority_queue<Ranked> ranking_;
};

}  // namespace zelnor::platform
