#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace zelnor::platform {

/// Names of files that have several and may not be read, so that the index lacks them: the kernel
/// tells of a change by the one name that it was made through. Holds 10,000 names and no more; some
/// may be gone. Thread-safe.
class HiddenNames {
 public:
  /// In place of what `path` was added with before.
  void add(const std::string& path, std::uint64_t inode);
  void forget(const std::string& path);
  /// The inode number that `path` was added with.
  [[nodiscard]] std::optional<std::uint64_t> inodeOf(const std::string& path) const;
  /// All names of this inode number (on any device).
  [[nodiscard]] std::vector<std::string> namesOf(std::uint64_t inode) const;

 private:
  void erase(const std::string& path);

  mutable std::mutex mutex_;
  std::map<std::string, std::uint64_t> inodes_;
  std::set<std::pair<std::uint64_t, std::string>> names_;  ///< the same by inode number
};

}  // namespace zelnor::platform
