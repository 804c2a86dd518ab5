#include "platform/linux/changes/MountTable.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "platform/ScopeFilter.h"

namespace zelnor::platform {

namespace {

constexpr std::size_t kMountPointField = 4;

std::string_view takeUntil(std::string_view& text, char end) {
  const auto part = text.substr(0, text.find(end));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

/// The kernel writes blanks and backslashes as a backslash and three octal digits.
std::string unescaped(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    constexpr std::size_t kDigits = 3;
    if (text.front() == '\\' && text.size() > kDigits) {
      int byte = 0;
      for (const char digit : text.substr(1, kDigits)) byte = byte * 8 + (digit - '0');
      plain += static_cast<char>(byte);
      text.remove_prefix(kDigits + 1);
    } else {
      plain += text.front();
      text.remove_prefix(1);
    }
  }
  return plain;
}

}  // namespace

MountTable MountTable::read() {
  std::ifstream file("/proc/self/mountinfo");
  const std::string text(std::istreambuf_iterator<char>(file), {});
  return parse(text);
}

MountTable MountTable::parse(std::string_view text) {
  MountTable table;
  while (!text.empty()) {
    auto line = takeUntil(text, '\n');
    for (std::size_t field = 0; field < kMountPointField; ++field) takeUntil(line, ' ');
    table.points_.push_back(withoutTrailingSlashes(unescaped(takeUntil(line, ' '))));
  }
  std::ranges::sort(table.points_);
  return table;
}

bool MountTable::isMountPoint(std::string_view path) const {
  return std::ranges::binary_search(points_, path);
}

std::string MountTable::covering(std::string_view path) const {
  while (!path.empty() && !isMountPoint(path)) path = parentOf(path);
  return std::string(path);
}

std::vector<std::string> MountTable::below(std::string_view path) const {
  std::vector<std::string> found;
  std::ranges::copy_if(points_, std::back_inserter(found),
                       [path](const std::string& point) { return isBelow(path, point); });
  const auto repeated = std::ranges::unique(found);
  found.erase(repeated.begin(), repeated.end());
  return found;
}

}  // namespace zelnor::platform
