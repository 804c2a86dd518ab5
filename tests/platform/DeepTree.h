#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/FileDescriptor.h"

namespace zelnor::test {

/// Folders named "d", one inside the other, each level with a file "z" beside "d". Paths
/// in it may be longer than the kernel accepts, which is why it makes and removes itself step by
/// step.
class DeepTree {
 public:
  DeepTree(std::string root, std::size_t depth) : root_(std::move(root)), depth_(depth) {
    auto folder = enter(AT_FDCWD, root_.c_str());
    for (std::size_t level = 0; level < depth_; ++level) {
      const platform::FileDescriptor file(openat(folder.get(), "z", O_CREAT | O_WRONLY, 0600));
      mkdirat(folder.get(), "d", 0700);
      folder = enter(folder.get(), "d");
    }
  }
  DeepTree(const DeepTree&) = delete;
  DeepTree& operator=(const DeepTree&) = delete;
  ~DeepTree() {
    auto folder = enter(AT_FDCWD, root_.c_str());
    for (std::size_t level = 0; level < depth_; ++level) folder = enter(folder.get(), "d");
    for (std::size_t level = 0; level < depth_; ++level) {
      folder = enter(folder.get(), "..");
      unlinkat(folder.get(), "z", 0);
      unlinkat(folder.get(), "d", AT_REMOVEDIR);
    }
  }

  /// The path of the folder at `level`; the root is at 0.
  [[nodiscard]] std::string folder(std::size_t level) const {
    auto path = root_;
    for (std::size_t i = 0; i < level; ++i) path += "/d";
    return path;
  }

 private:
  static platform::FileDescriptor enter(int from, const char* name) {
    if (from == -1) return {};
    return platform::FileDescriptor(openat(from, name, O_PATH | O_DIRECTORY | O_CLOEXEC));
  }
  const std::string root_;
  const std::size_t depth_;
};

}  // namespace zelnor::test
