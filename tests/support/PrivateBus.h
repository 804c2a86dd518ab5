#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>

#include <spawn.h>

#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

/// A session bus of the test's own, always at the same address, that can go away and come back.
class PrivateBus {
 public:
  PrivateBus() { start(); }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  ~PrivateBus() { stop(); }

  [[nodiscard]] std::string address() const { return "unix:path=" + folder_ / "bus"; }

  /// Returns when it listens.
  void start() {
    std::array<int, 2> ready{};
    if (pipe2(ready.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ready[1], STDOUT_FILENO);
    std::array<std::string, 6> words{"dbus-daemon", "--session",       "--nofork",
                                     "--nopidfile", "--print-address", "--address=" + address()};
    std::array<char*, 7> arguments{};
    for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = words[i].data();
    const int error =
        posix_spawnp(&process_, "dbus-daemon", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ready[1]);
    char first = 0;
    const bool isReady = error == 0 && read(ready[0], &first, 1) == 1;
    close(ready[0]);
    if (!isReady) throw std::runtime_error("no dbus-daemon");
  }
  void stop() {
    if (process_ == 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
    std::filesystem::remove(folder_ / "bus");
  }

 private:
  const TemporaryFolder folder_;
  pid_t process_ = 0;
};

}  // namespace zelnor::test
