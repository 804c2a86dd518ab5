#pragma once

#include <cstdint>
#include <string>

namespace zelnor::platform {

/// A new startup notification id (freedesktop.org startup notification protocol) that holds `time`:
/// the X server's milliseconds of the user's key or click.
std::string startupId(std::uint64_t time);

}  // namespace zelnor::platform
