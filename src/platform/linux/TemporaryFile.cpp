#include "platform/TemporaryFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <stdlib.h>

namespace zelnor::platform {

FileDescriptor createTemporaryFile(const std::string& folder) {
  FileDescriptor file(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  if (file) return file;
  // Not every file system knows files without a name.
  auto pattern = folder + "/.spool-XXXXXX";
  file = FileDescriptor(::mkostemp(pattern.data(), O_CLOEXEC));
  if (file) ::unlink(pattern.c_str());
  return file;
}

bool writeAt(const FileDescriptor& file, std::span<const char> bytes, std::int64_t offset) {
  while (!bytes.empty()) {
    const auto written = ::pwrite(file.get(), bytes.data(), bytes.size(), offset);
    if (written <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
    offset += written;
  }
  return true;
}

bool readAt(const FileDescriptor& file, std::span<char> bytes, std::int64_t offset) {
  while (!bytes.empty()) {
    const auto count = ::pread(file.get(), bytes.data(), bytes.size(), offset);
    if (count <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
    offset += count;
  }
  return true;
}

void discardRange(const FileDescriptor& file, std::int64_t offset, std::int64_t bytes) {
  ::fallocate(file.get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, offset, bytes);
}

}  // namespace zelnor::platform
