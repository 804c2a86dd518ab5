#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelnor::platform {

/// Where file systems are mounted, as proc(5) says in /proc/self/mountinfo. A value.
class MountTable {
 public:
  /// As it is now.
  static MountTable read();
  /// From the text of that file.
  static MountTable parse(std::string_view text);

  [[nodiscard]] bool isMountPoint(std::string_view path) const;
  /// The mount point that `path` is at or below; "" is the top.
  [[nodiscard]] std::string covering(std::string_view path) const;
  /// The mount points below `path`.
  [[nodiscard]] std::vector<std::string> below(std::string_view path) const;

 private:
  std::vector<std::string> points_;  ///< sorted, without slashes at the end
};

}  // namespace zelnor::platform
