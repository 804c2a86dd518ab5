#include "platform/linux/LongPath.h"

#include <fcntl.h>

#include <cerrno>
#include <climits>
#include <string_view>
#include <utility>

namespace zelnor::platform {

int ShortPath::folderOrCurrent() const { return folder ? folder.get() : AT_FDCWD; }

ShortPath shorten(const std::string& path) {
  ShortPath result{.folder = {}, .rest = path.c_str()};
  std::string_view left = path;
  while (left.size() >= PATH_MAX) {
    const auto end = left.rfind('/', PATH_MAX - 2);
    if (end == std::string_view::npos || end == 0) {
      errno = ENAMETOOLONG;
      return {};
    }
    const std::string piece(left.substr(0, end));
    FileDescriptor next(
        ::openat(result.folderOrCurrent(), piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!next) return {};
    result.folder = std::move(next);
    left.remove_prefix(end + 1);
    result.rest += end + 1;
  }
  return result;
}

}  // namespace zelnor::platform
