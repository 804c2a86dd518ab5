#include "shell/GlobalHotkeyManager.h"

#include <cstdio>
#include <utility>

namespace zelnor {

namespace {

void printRefusal(int code) {
  std::printf("⚠️ RegisterEventHotKey 失败 (code=%d)，该快捷键可能已被其他应用占用\n", code);
  std::fflush(stdout);
}

}  // namespace

void GlobalHotkeyManager::registerHotkey(const platform::HotkeyConfiguration& config,
                                         Action action) {
  unregister();
  registration_ = Registration{.config = config, .action = std::move(action)};
  if (!isSuspended_) grab(*registration_);
}

void GlobalHotkeyManager::unregister() {
  hotkey_.release();
  registration_.reset();
}

void GlobalHotkeyManager::setSuspended(bool isSuspended) {
  if (std::exchange(isSuspended_, isSuspended) == isSuspended || !registration_) return;
  if (isSuspended) {
    hotkey_.release();
  } else {
    grab(*registration_);
  }
}

void GlobalHotkeyManager::grab(const Registration& registration) {
  hotkey_.grab(registration.config, registration.action, printRefusal);
}

}  // namespace zelnor
