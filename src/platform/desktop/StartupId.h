#pragma once

#include <cstdint>
#include <string>

namespace zelnor::platform {

/// A new startup notification id (freedesktop.org startup notification protocol), which holds the
/// time of the user's input in the X server's milliseconds.
std::string startupId(std::uint64_t time);

/// What another program says is the time of an input: whether the X server of this machine may have
/// said so within the last minute. Some send seconds of the calendar, or 0.
bool isRecentInputTime(std::uint32_t time);

}  // namespace zelnor::platform
