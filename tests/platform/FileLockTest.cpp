#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <optional>
#include <stop_token>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "platform/FileLock.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::platform {
namespace {

TEST(FileLock, HasOneHolderAtATime) {
  const test::TemporaryFolder folder;
  const auto path = folder / "lock";
  auto held = FileLock::tryAcquire(path);
  ASSERT_TRUE(held);
  EXPECT_FALSE(FileLock::tryAcquire(path));
  auto waiting = std::async(std::launch::async, [&] {
    const auto lock = FileLock::acquire(path);
    return !FileLock::tryAcquire(path);
  });
  held.reset();
  EXPECT_TRUE(waiting.get());
  EXPECT_TRUE(FileLock::tryAcquire(path));
}

/// Whether somebody waits for the lock on this file, proc(5).
bool isWaitedFor(const std::string& path) {
  struct stat status{};
  if (stat(path.c_str(), &status) != 0) return false;
  const auto inode = ":" + std::to_string(status.st_ino) + " ";
  std::ifstream locks("/proc/locks");
  for (std::string line; std::getline(locks, line);) {
    if (line.find("-> FLOCK") != std::string::npos && line.find(inode) != std::string::npos)
      return true;
  }
  return false;
}

/// A thread that wants the lock.
class Waiter {
 public:
  explicit Waiter(std::string path) : path_(std::move(path)) {}

  void cancel() { stop_.request_stop(); }
  /// Whether it got the lock, which it still has.
  bool got() {
    if (result_.wait_for(kPatience) != std::future_status::ready) return false;
    lock_ = result_.get();
    return lock_.has_value();
  }
  [[nodiscard]] bool isBlocked() const {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (!isWaitedFor(path_)) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      std::this_thread::yield();
    }
    return true;
  }

 private:
  static constexpr std::chrono::seconds kPatience{10};
  const std::string path_;
  std::stop_source stop_;
  std::optional<FileLock> lock_;
  std::future<std::optional<FileLock>> result_ = std::async(
      std::launch::async, [this] { return FileLock::acquireWhenFree(path_, stop_.get_token()); });
};

/// A process that has the lock until it is killed; the caller waits for its end.
pid_t processWithLock(const std::string& path) {
  std::array<int, 2> taken{};
  if (pipe(taken.data()) != 0) return -1;
  const pid_t process = fork();
  if (process == 0) {
    const auto lock = FileLock::tryAcquire(path);
    if (!lock || write(taken[1], "x", 1) != 1) _exit(1);
    for (;;) pause();
  }
  close(taken[1]);
  char byte = 0;
  EXPECT_EQ(read(taken[0], &byte, 1), 1);
  close(taken[0]);
  return process;
}

TEST(FileLock, WhoWaitsGetsItWhenItsHolderLetsGoOrIsKilled) {
  const test::TemporaryFolder folder;
  const auto path = folder / "lock";
  EXPECT_TRUE(Waiter(path).got()) << "nobody has it";

  auto held = FileLock::tryAcquire(path);
  Waiter next(path);
  ASSERT_TRUE(next.isBlocked());
  held.reset();
  EXPECT_TRUE(next.got());

  const auto other = folder / "other";
  const pid_t process = processWithLock(other);
  Waiter heir(other);
  ASSERT_TRUE(heir.isBlocked());
  kill(process, SIGKILL);
  EXPECT_TRUE(heir.got());
  waitpid(process, nullptr, 0);
  EXPECT_FALSE(FileLock::tryAcquire(other));
}

TEST(FileLock, WaitingCanBeGivenUpAtAnyMoment) {
  const test::TemporaryFolder folder;
  const auto path = folder / "lock";
  const auto held = FileLock::tryAcquire(path);
  {
    Waiter waiter(path);
    ASSERT_TRUE(waiter.isBlocked());
    waiter.cancel();
    EXPECT_FALSE(waiter.got());
  }
  for (int moment = 0; moment < 200; ++moment) {
    Waiter waiter(path);
    if (moment % 2 == 0) std::this_thread::yield();
    waiter.cancel();
    EXPECT_FALSE(waiter.got());
  }
  EXPECT_FALSE(isWaitedFor(path));
}

TEST(FileLock, WhoWaitedHasTheLockOnTheFileThatIsThereThen) {
  const test::TemporaryFolder folder;
  const auto path = folder / "lock";
  auto held = FileLock::tryAcquire(path);
  Waiter waiter(path);
  ASSERT_TRUE(waiter.isBlocked());
  std::filesystem::remove(path);
  held.reset();
  EXPECT_TRUE(waiter.got());
  EXPECT_FALSE(FileLock::tryAcquire(path));
}

TEST(FileLock, AFileThatCannotBeCreatedIsAnError) {
  const test::TemporaryFolder folder;
  EXPECT_THROW(FileLock::tryAcquire(folder / "missing/lock"), std::system_error);
  EXPECT_THROW(FileLock::acquire(folder.path()), std::system_error);
}

}  // namespace
}  // namespace zelnor::platform
