#include "platform/desktop/hotkey/FallbackHotkey.h"

#include <utility>

#include "platform/desktop/hotkey/Combination.h"

namespace zelnor::platform {

FallbackHotkey::FallbackHotkey(std::vector<std::unique_ptr<GlobalHotkey>> services)
    : services_(std::move(services)) {}

FallbackHotkey::~FallbackHotkey() { release(); }

void FallbackHotkey::grab(const HotkeyConfiguration& combination, Pressed pressed,
                          Refused refused) {
  release();
  combination_ = combination;
  pressed_ = std::move(pressed);
  refused_ = std::move(refused);
  ask(/*service=*/0);
}

void FallbackHotkey::release() {
  for (const auto& service : services_) service->release();
}

void FallbackHotkey::ask(std::size_t service) {
  if (service == services_.size()) {
    refused_(kHotkeyUnavailable);
    return;
  }
  services_[service]->grab(combination_, pressed_, [this, service](int code) {
    if (code == kHotkeyUnavailable) {
      ask(service + 1);
    } else {
      refused_(code);
    }
  });
}

}  // namespace zelnor::platform
