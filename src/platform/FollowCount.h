#pragma once

#include <cstdint>

namespace zelnor::platform {

/// How many folders are followed, and how.
struct FollowCount {
  std::int64_t live = 0;   ///< the kernel tells of what changes in them
  std::int64_t swept = 0;  ///< looked at again and again

  friend bool operator==(const FollowCount&, const FollowCount&) = default;
};

}  // namespace zelnor::platform
