#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/HotkeyConfiguration.h"

// Why a combination is refused: X11's error numbers, also where no X server was asked, so that one
// number means one thing. And a combination as different desktops write it.

namespace zelnor::platform {

enum HotkeyRefusal : int {
  kHotkeyImpossible = 2,    ///< BadValue: no such key, or none of the four modifiers
  kHotkeyTaken = 10,        ///< BadAccess: somebody else has it, or the user said no
  kHotkeyUnavailable = 17,  ///< BadImplementation: this desktop has no such service
};

/// The key's evdev code; nothing for what must not be grabbed: an unknown key, or one alone, which
/// nobody could type any more.
std::optional<std::uint32_t> grabbableKey(const HotkeyConfiguration& combination);

/// As the freedesktop.org "shortcuts" format has it, "CTRL+ALT+space": the key by the name that its
/// position has on an ANSI keyboard. Nothing if it cannot be grabbed. Reads files.
std::optional<std::string> portalTrigger(const HotkeyConfiguration& combination);

/// As GNOME's settings have it, "<Control><Alt>0x41": the key by its X11 key code, so that it is
/// the same position on whichever layout. Nothing if it cannot be grabbed.
std::optional<std::string> gnomeAccelerator(const HotkeyConfiguration& combination);

/// Whether `accelerator`, from GNOME's settings, is pressed by the same keys: a key there is a key
/// code or a name (of its position on an ANSI keyboard). Reads files.
bool isSameAccelerator(const std::string& accelerator, const HotkeyConfiguration& combination);

}  // namespace zelnor::platform
