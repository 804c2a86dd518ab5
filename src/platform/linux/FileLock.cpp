#include "platform/FileLock.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <functional>
#include <system_error>
#include <thread>

#include <pthread.h>

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

/// Whether `path` still leads to this file.
bool isAt(const std::string& path, const FileDescriptor& file) {
  struct stat there{};
  struct stat ours{};
  return ::stat(path.c_str(), &there) == 0 && ::fstat(file.get(), &ours) == 0 &&
         there.st_dev == ours.st_dev && there.st_ino == ours.st_ino;
}

/// Once a stop is requested, makes the call that this thread is blocked in fail with EINTR.
class Interruption {
 public:
  explicit Interruption(const std::stop_token& stop) : onStop_(stop, [this] { interrupt(); }) {}
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;
  ~Interruption() { isOver_ = true; }

 private:
  /// A signal that is handled, by nothing; as long as the process lives.
  static int prepareSignal() {
    struct sigaction action{};
    action.sa_handler = [](int /*number*/) {};
    ::sigaction(SIGRTMIN, &action, nullptr);
    return SIGRTMIN;
  }

  void interrupt() {
    static const int kSignal = prepareSignal();
    if (::pthread_equal(thread_, ::pthread_self()) != 0) return;
    // One that arrives just before the call begins has no effect on it.
    while (!isOver_) {
      ::pthread_kill(thread_, kSignal);
      std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
  }

  const pthread_t thread_ = ::pthread_self();
  std::atomic<bool> isOver_ = false;
  std::stop_callback<std::function<void()>> onStop_;  // goes first, and waits for a call of its own
};

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

// Waiting in the kernel, which hands the lock on whatever becomes of its holder. To watch the file
// instead would not do: the kernel tells that a file was closed before it releases its locks.
std::optional<FileLock> FileLock::acquireWhenFree(const std::string& path,
                                                  const std::stop_token& stop) {
  const Interruption interruption(stop);
  while (!stop.stop_requested()) {
    auto file = openLockFile(path);
    const int error = ::flock(file.get(), LOCK_EX) == 0 ? 0 : errno;
    if (error == EINTR) continue;
    if (error != 0) fail(error, path);
    // In so long a time somebody may have removed the file, and others lock its successor.
    if (isAt(path, file)) return FileLock(std::move(file));
  }
  return std::nullopt;
}

}  // namespace zelnor::platform
