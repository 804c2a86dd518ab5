#include "platform/FileDescriptor.h"

#include <unistd.h>

#include <array>
#include <cerrno>

namespace zelnor::platform {

void FileDescriptor::close() {
  if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
}

std::optional<std::string> readAll(const FileDescriptor& file) {
  std::string text;
  std::array<char, 4096> buffer{};
  for (;;) {
    const auto size = ::read(file.get(), buffer.data(), buffer.size());
    if (size == 0) return text;
    if (size > 0) text.append(buffer.data(), static_cast<std::size_t>(size));
    if (size < 0 && errno != EINTR) return std::nullopt;
  }
}

}  // namespace zelnor::platform
