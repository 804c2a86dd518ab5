#pragma once

#include <cstdint>
#include <optional>

// Two numberings of the positions on an ANSI keyboard, whatever layout is in use: virtual key
// codes, in which hot keys are stored, and the kernel's (linux/input-event-codes.h). An X11 key
// code, and the scan code of a Qt key event, is the kernel's plus `kX11Offset`.

namespace zelnor::platform {

inline constexpr std::uint32_t kX11Offset = 8;

/// Nothing for a key that the other numbering does not know.
std::optional<std::uint32_t> evdevFromVirtual(std::uint32_t keyCode);
std::optional<std::uint32_t> virtualFromEvdev(std::uint32_t evdevCode);

/// The letter (lower case) or digit at this position; nothing for every other key.
std::optional<char> characterAt(std::uint32_t keyCode);

}  // namespace zelnor::platform
