#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/GlobalHotkey.h"

namespace zelnor::platform {

/// The first of several services that the desktop has. Each is asked anew for every combination; a
/// refusal of one that the desktop does have counts.
class FallbackHotkey final : public GlobalHotkey {
 public:
  /// With none, everything is refused with kHotkeyUnavailable.
  explicit FallbackHotkey(std::vector<std::unique_ptr<GlobalHotkey>> services);
  ~FallbackHotkey() override;

  void grab(const HotkeyConfiguration& combination, Pressed pressed, Refused refused) override;
  void release() override;

 private:
  void ask(std::size_t service);

  std::vector<std::unique_ptr<GlobalHotkey>> services_;
  HotkeyConfiguration combination_;
  Pressed pressed_;
  Refused refused_;
};

}  // namespace zelnor::platform
