#include "platform/desktop/StartupId.h"

#include <unistd.h>

#include <atomic>

#include <QString>
#include <QSysInfo>

namespace zelnor::platform {

std::string startupId(std::uint64_t time) {
  static std::atomic<unsigned> sequence = 0;
  return "zelnor-" + std::to_string(::getpid()) + '-' + QSysInfo::machineHostName().toStdString() +
         '-' + std::to_string(++sequence) + "_TIME" + std::to_string(time);
}

}  // namespace zelnor::platform
