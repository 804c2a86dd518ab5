#include "cli/StandardOutput.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

namespace zelnor::cli {

namespace {

constexpr std::size_t kBufferBytes = 65'536;

}  // namespace

StandardOutput::StandardOutput() : isTerminal_(::isatty(STDOUT_FILENO) == 1) {
  buffer_.reserve(kBufferBytes);
}

void StandardOutput::write(std::string_view text) {
  buffer_ += text;
  if (buffer_.size() >= kBufferBytes) flush();
}

void StandardOutput::flush() {
  std::string_view rest = buffer_;
  while (!rest.empty()) {
    const auto written = ::write(STDOUT_FILENO, rest.data(), rest.size());
    if (written < 0 && errno != EINTR) {
      const std::error_code error(errno, std::generic_category());
      buffer_.clear();
      throw std::system_error(error, "cannot write the results");
    }
    if (written > 0) rest.remove_prefix(static_cast<std::size_t>(written));
  }
  buffer_.clear();
}

}  // namespace zelnor::cli
