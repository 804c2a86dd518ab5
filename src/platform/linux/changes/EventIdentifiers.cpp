#include "platform/linux/changes/EventIdentifiers.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <optional>

// The file holds one decimal number and a newline: the last number that is reserved. It is written
// in place, in one write of fixed length, so that no reader finds a part of it.

namespace zelnor::platform {

namespace {

constexpr const char* kFileName = "/event-identifiers";
constexpr std::uint64_t kBlock = 65'536;
constexpr std::size_t kDigits = 20;  ///< of the largest 64-bit number

/// Holds the lock on `file`, which orders the processes that reserve.
class Locked {
 public:
  explicit Locked(const FileDescriptor& file) : file_(file) {
    isHeld_ = ::flock(file_.get(), LOCK_EX) == 0;
  }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
  ~Locked() {
    if (isHeld_) ::flock(file_.get(), LOCK_UN);
  }

 private:
  const FileDescriptor& file_;
  bool isHeld_ = false;
};

std::uint64_t microsecondsNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

/// 0 for a new file; nothing for one that holds no number.
std::optional<std::uint64_t> readNumber(const FileDescriptor& file) {
  std::array<char, kDigits> text{};
  const auto length = ::pread(file.get(), text.data(), text.size(), /*offset=*/0);
  if (length == 0) return 0;
  std::uint64_t number = 0;
  const auto parsed =
      std::from_chars(text.data(), text.data() + std::max<ssize_t>(length, 0), number);
  return parsed.ec == std::errc{} ? std::optional(number) : std::nullopt;
}

bool writeNumber(const FileDescriptor& file, std::uint64_t number) {
  const auto digits = std::to_string(number);
  const auto text = std::string(kDigits - digits.size(), '0') + digits + '\n';
  const auto written = ::pwrite(file.get(), text.data(), text.size(), /*offset=*/0);
  return written == static_cast<ssize_t>(text.size()) && ::fdatasync(file.get()) == 0;
}

}  // namespace

EventIdentifiers::EventIdentifiers(const std::string& folder, std::uint64_t last)
    : last_(last), reservedEnd_(last) {
  if (folder.empty()) return;
  file_ = FileDescriptor(
      ::open((folder + kFileName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

EventIdentifiers::~EventIdentifiers() {
  if (!file_ || last_ == reservedEnd_) return;
  const Locked lock(file_);
  // Somebody else may have reserved after us.
  if (readNumber(file_) == reservedEnd_) writeNumber(file_, last_);
}

std::uint64_t EventIdentifiers::next() {
  if (last_ == reservedEnd_) reserve();
  return ++last_;
}

void EventIdentifiers::reserve() {
  if (file_) {
    const Locked lock(file_);
    last_ = std::max(last_, readNumber(file_).value_or(microsecondsNow()));
    reservedEnd_ = last_ + kBlock;
    if (writeNumber(file_, reservedEnd_)) return;
    file_.close();
  }
  last_ = std::max(last_, microsecondsNow());
  reservedEnd_ = last_ + kBlock;
}

}  // namespace zelnor::platform
