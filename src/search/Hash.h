#pragma once

#include <bit>
#include <cstddef>
#include <functional>

namespace zelnor {

/// One hash of several parts, in their order.
template <class... Parts>
std::size_t hashOf(const Parts&... parts) {
  std::size_t hash = 0;
  ((hash = std::rotl(hash, 7) ^ (std::hash<Parts>{}(parts) * 0x9E3779B97F4A7C15ULL)), ...);
  return hash;
}

}  // namespace zelnor
