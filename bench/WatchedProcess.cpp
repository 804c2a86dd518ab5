#include "bench/WatchedProcess.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "platform/FileDescriptor.h"

namespace zelnor::bench {
namespace {

using platform::FileDescriptor;

constexpr int kSampleMilliseconds = 5;

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

struct Pipe {
  FileDescriptor readEnd;
  FileDescriptor writeEnd;

  static Pipe open() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) fail("pipe");
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
  }
};

/// Line "RssAnon: … kB" of proc(5); 0 once the process has ended.
std::int64_t anonymousBytes(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string word; status >> word;) {
    std::int64_t kibibytes = 0;
    if (word == "RssAnon:" && status >> kibibytes) return kibibytes * 1024;
  }
  return 0;
}

std::int64_t watchedBytes(const std::string& path) {
  std::error_code missing;
  const auto size = std::filesystem::file_size(path, missing);
  return missing ? 0 : static_cast<std::int64_t>(size);
}

[[noreturn]] void runChild(const std::function<nlohmann::ordered_json()>& work,
                           const FileDescriptor& output) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  nlohmann::ordered_json message;
  try {
    message["answer"] = work();
  } catch (const std::exception& error) {
    message["error"] = error.what();
  }
  const auto text = message.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  std::string_view left = text;
  while (!left.empty()) {
    const auto written = write(output.get(), left.data(), left.size());
    if (written < 0) _exit(EXIT_FAILURE);
    left.remove_prefix(static_cast<std::size_t>(written));
  }
  _exit(EXIT_SUCCESS);
}

/// Reads what the child says until it closes its end, sampling meanwhile.
std::string listen(const FileDescriptor& input, pid_t child, const std::string& watchedFile,
                   WatchedRun& run) {
  std::string text;
  pollfd waiting{.fd = input.get(), .events = POLLIN, .revents = 0};
  for (;;) {
    run.peakAnonymousBytes = std::max(run.peakAnonymousBytes, anonymousBytes(child));
    run.peakFileBytes = std::max(run.peakFileBytes, watchedBytes(watchedFile));
    if (poll(&waiting, /*nfds=*/1, kSampleMilliseconds) <= 0) continue;
    std::array<char, 4096> buffer{};
    const auto count = read(input.get(), buffer.data(), buffer.size());
    if (count <= 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace

std::int64_t ownAnonymousBytes() { return anonymousBytes(getpid()); }

WatchedRun runWatched(const std::function<nlohmann::ordered_json()>& work,
                      const std::string& watchedFile) {
  auto pipe = Pipe::open();
  const pid_t child = fork();
  if (child < 0) fail("fork");
  if (child == 0) runChild(work, pipe.writeEnd);
  pipe.writeEnd.close();

  WatchedRun run;
  const auto text = listen(pipe.readEnd, child, watchedFile, run);
  int status = 0;
  waitpid(child, &status, /*options=*/0);
  const auto message = nlohmann::ordered_json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (message.is_discarded()) throw std::runtime_error("a measurement died");
  if (message.contains("error")) throw std::runtime_error(message["error"].get<std::string>());
  run.answer = message["answer"];
  return run;
}

}  // namespace zelnor::bench
