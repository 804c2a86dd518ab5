#include "platform/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>

namespace zelnor::platform {

namespace {

[[noreturn]] void fail(int error, const std::string& path) {
  throw std::system_error(error, std::generic_category(), path);
}

FileDescriptor openLockFile(const std::string& path) {
  FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!file) fail(errno, path);
  return file;
}

/// 0, or what went wrong, as errno.
int lock(const FileDescriptor& file, int operation) {
  while (::flock(file.get(), operation) != 0) {
    if (errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace

std::optional<FileLock> FileLock::tryAcquire(const std::string& path) {
  auto file = openLockFile(path);
  const int error = lock(file, LOCK_EX | LOCK_NB);
  if (error == EWOULDBLOCK) return std::nullopt;
  if (error != 0) fail(error, path);
  return FileLock(std::move(file));
}

FileLock FileLock::acquire(const std::string& path) {
  auto file = openLockFile(path);
  if (const int error = lock(file, LOCK_EX); error != 0) fail(error, path);
  return FileLock(std::move(file));
}

}  // namespace zelnor::platform
