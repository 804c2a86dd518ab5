#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/HotkeyConfiguration.h"

namespace zelnor::platform {

/// A key symbol (X11/keysymdef.h) on a key that is one of the eight modifiers, given as its bit.
struct ModifierKey {
  std::uint16_t modifier;
  std::uint32_t symbol;
};

/// Which of X11's eight modifiers are what; all but Shift, Lock and Control may change at any time.
struct X11Modifiers {
  std::uint16_t option = 1U << 3;   ///< Mod1, where nothing else is said
  std::uint16_t command = 1U << 6;  ///< Mod4
  std::uint16_t locks = 1U << 1;    ///< Caps Lock, Num Lock and Scroll Lock

  /// `keys` in the order of the modifiers.
  static X11Modifiers from(std::span<const ModifierKey> keys);

  /// Every mask with which the combination arrives: its modifiers, with each choice of locks. Empty
  /// without any of the four modifiers.
  [[nodiscard]] std::vector<std::uint16_t> masks(const HotkeyConfiguration& combination) const;
};

}  // namespace zelnor::platform
