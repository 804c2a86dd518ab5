#pragma once

#include <cstdint>

namespace zelnor::cli {

/// What the program tells its caller, as grep does.
enum class ExitStatus : std::uint8_t { matches = 0, noMatches = 1, error = 2 };

}  // namespace zelnor::cli
