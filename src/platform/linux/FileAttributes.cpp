#include "platform/FileAttributes.h"

#include "platform/linux/EntryStatus.h"
#include "platform/linux/LongPath.h"

namespace zelnor::platform {

std::optional<FileAttributes> readAttributes(const std::string& path) {
  // A NUL byte would end the path early for the kernel, and name another entry.
  if (path.find('\0') != std::string::npos) return std::nullopt;
  const auto shortPath = shorten(path);
  if (shortPath.rest == nullptr) return std::nullopt;
  const auto status = readStatus(shortPath.folderOrCurrent(), shortPath.rest);
  return status ? std::optional(attributesFrom(*status)) : std::nullopt;
}

}  // namespace zelnor::platform
