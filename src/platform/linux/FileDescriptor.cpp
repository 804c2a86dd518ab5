#include "platform/FileDescriptor.h"

#include <unistd.h>

namespace zelnor::platform {

void FileDescriptor::close() {
  if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
}

}  // namespace zelnor::platform
