#include "platform/desktop/StartupId.h"

#include <unistd.h>

#include <atomic>
#include <chrono>

#include <QString>
#include <QSysInfo>

namespace zelnor::platform {

std::string startupId(std::uint64_t time) {
  static std::atomic<unsigned> sequence = 0;
  return "zelnor-" + std::to_string(::getpid()) + '-' + QSysInfo::machineHostName().toStdString() +
         '-' + std::to_string(++sequence) + "_TIME" + std::to_string(time);
}

bool isRecentInputTime(std::uint32_t time) {
  constexpr std::uint32_t kMinute = 60'000;
  using std::chrono::duration_cast;
  using std::chrono::milliseconds;
  // X servers on Linux take the monotonic clock, cut to 32 bits.
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const auto serverNow = static_cast<std::uint32_t>(duration_cast<milliseconds>(now).count());
  return serverNow - time < kMinute;
}

}  // namespace zelnor::platform
