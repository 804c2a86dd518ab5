#include "tests/platform_hotkey/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

#include <spawn.h>

#include "platform/FileDescriptor.h"

namespace zelnor::test {

namespace {

constexpr int kStartMilliseconds = 30'000;

/// `output` becomes its standard output; -1 is none. posix_spawn, because the thread sanitizer
/// takes what other ways of starting do between fork and exec for its own process's.
pid_t spawn(std::vector<std::string> command, int output) {
  posix_spawn_file_actions_t actions{};
  posix_spawn_file_actions_init(&actions);
  for (const int standard : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, standard, "/dev/null", O_WRONLY, /*mode=*/0);
  }
  if (output >= 0) posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  std::vector<char*> arguments;
  for (auto& argument : command) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  pid_t process = -1;
  const int error =
      posix_spawnp(&process, arguments[0], &actions, /*attrp=*/nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error(command.front() + " does not start");
  return process;
}

/// Up to the end of the line; less if nothing more comes.
std::string readLine(int descriptor) {
  std::string line;
  pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
  char next = '\0';
  while (poll(&readable, /*nfds=*/1, kStartMilliseconds) > 0 && read(descriptor, &next, 1) == 1 &&
         next != '\n') {
    line += next;
  }
  return line;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe");
  const platform::FileDescriptor reading(ends[0]);
  platform::FileDescriptor writing(ends[1]);
  std::vector<std::string> bound{"setpriv", "--pdeathsig", "KILL"};
  bound.insert(bound.end(), command.begin(), command.end());
  process_ = spawn(std::move(bound), writing.get());
  writing.close();
  firstLine_ = readLine(reading.get());
  if (!firstLine_.empty()) return;
  kill();
  throw std::runtime_error(command.front() + " does not answer");
}

void ChildProcess::kill() {
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  waitpid(process_, /*stat_loc=*/nullptr, /*options=*/0);
  process_ = -1;
}

bool runProgram(const std::vector<std::string>& command) {
  int status = 0;
  return waitpid(spawn(command, /*output=*/-1), &status, /*options=*/0) > 0 && status == 0;
}

}  // namespace zelnor::test
