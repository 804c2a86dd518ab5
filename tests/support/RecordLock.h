#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace zelnor::test {

/// A lock of this process on a file, of the kind that SQLite takes: whoever in the process opens
/// and closes the file drops it, fcntl(2).
class RecordLock {
 public:
  explicit RecordLock(std::string path)
      : path_(std::move(path)), file_(::open(path_.c_str(), O_RDWR | O_CLOEXEC)) {
    auto lock = whole(F_WRLCK);
    ::fcntl(file_, F_SETLK, &lock);
  }
  RecordLock(const RecordLock&) = delete;
  RecordLock& operator=(const RecordLock&) = delete;
  ~RecordLock() { ::close(file_); }

  /// Whether another process finds the file locked.
  [[nodiscard]] bool isHeld() const {
    const pid_t other = ::fork();
    if (other == 0) {
      auto lock = whole(F_WRLCK);
      const int file = ::open(path_.c_str(), O_RDWR | O_CLOEXEC);
      _exit(::fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK ? 0 : 1);
    }
    int status = -1;
    ::waitpid(other, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }

 private:
  static struct flock whole(short type) {
    return {.l_type = type, .l_whence = SEEK_SET, .l_start = 0, .l_len = 0, .l_pid = 0};
  }

  const std::string path_;
  const int file_;
};

}  // namespace zelnor::test
