#include "shell/LaunchAtLoginService.h"

#include <cstdio>
#include <exception>
#include <stop_token>
#include <utility>

#include <asio/strand.hpp>

#include "platform/LoginItem.h"
#include "tasks/RunOn.h"

namespace zelnor {

LaunchAtLoginService::LaunchAtLoginService(platform::LoginItem& item, const tasks::Executor& main,
                                           const tasks::Executor& background)
    : item_(item), main_(main), background_(asio::make_strand(background)), tasks_(main) {
  tasks_.spawn([this](const std::stop_token&) { return look(); });
}

LaunchAtLoginService::~LaunchAtLoginService() = default;

void LaunchAtLoginService::setEnabled(bool isEnabled) {
  tasks_.spawn([this, isEnabled](const std::stop_token&) { return change(isEnabled); });
}

tasks::Async<void> LaunchAtLoginService::change(bool isEnabled) {
  const auto ask = [this, isEnabled] {
    try {
      isEnabled ? item_.registerItem() : item_.unregisterItem();
    } catch (const std::exception& error) {
      std::printf("[LaunchAtLogin] Error: %s\n", error.what());
      std::fflush(stdout);
    }
  };
  co_await tasks::runOn(background_, ask);
  co_await look();
}

tasks::Async<void> LaunchAtLoginService::look() {
  const auto isEnabledNow = [this] {
    return item_.status() == platform::LoginItem::Status::enabled;
  };
  isEnabled_ = co_await tasks::runOn(background_, isEnabledNow);
  Q_EMIT looked(isEnabled_);
}

void LaunchAtLoginService::stop(std::function<void()> stopped) {
  tasks_.close();
  tasks::Task::spawn(
      main_, [this, stopped = std::move(stopped)](const std::stop_token&) -> tasks::Async<void> {
        co_await tasks_.wait();
        stopped();
      });
}

}  // namespace zelnor
