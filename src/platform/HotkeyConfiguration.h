#pragma once

#include <cstdint>
#include <string>

#include "platform/DefaultsStore.h"

namespace zelnor::platform {

/// A key combination: a position on an ANSI keyboard, and the modifiers held with it.
struct HotkeyConfiguration {
  // The bits of `modifiers`. On a Linux keyboard command is Super, option Alt, control Ctrl.
  static constexpr std::uint32_t kCommand = 0x0100;
  static constexpr std::uint32_t kShift = 0x0200;
  static constexpr std::uint32_t kOption = 0x0800;
  static constexpr std::uint32_t kControl = 0x1000;

  std::uint32_t keyCode = 49;  ///< a virtual key code, see KeyCodes.h; 49 is the space bar
  std::uint32_t modifiers = kControl | kOption;

  /// The stored combination; the default if there is none that makes sense. Reads the settings.
  static HotkeyConfiguration load(const DefaultsStore& defaults);
  /// Stores it. Waits for the disk.
  void save(DefaultsStore& defaults) const;

  /// As users read it, in UTF-8: the symbols of the modifiers, then the key; "⌃⌥Space".
  [[nodiscard]] std::string displayString() const;

  friend bool operator==(const HotkeyConfiguration&, const HotkeyConfiguration&) = default;
};

}  // namespace zelnor::platform
