#pragma once

#include <cstdint>
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
  void add(const std::string& path, std::uint64_t inode);
  /// The inode number that `path` was added with.
  [[nodiscard]] std::optional<std::uint64_t> inodeOf(const std::string& path) const;
  /// All names of this inode number (on any device), which are forgotten.
  std::vector<std::string> take(std::uint64_t inode);

 private:
  using Name = std::pair<std::uint64_t, std::string>;

  mutable std::mutex mutex_;
  std::set<Name> names_;
};

}  // namespace zelnor::platform
