#pragma once

#include <cstdint>
#include <string>

#include "bench/Figures.h"
#include "bench/FollowedIndex.h"

namespace zelnor::bench {

/// How much is changed while the index is watched.
struct LiveEffort {
  int changes = 200;                ///< one by one
  int perSecond = 10'000;           ///< creations in the storm
  double seconds = 10;              ///< of the storm, and of searching while nothing happens
  std::uint64_t entries = 100'000;  ///< of the tree that is unpacked and moved
  std::uint64_t folders = 100'000;  ///< that are followed, for the memory it takes
  double idleSeconds = 60;
  std::uint64_t seed = 1;
  FollowedIndex::Source source;  ///< how changes are followed; none: the best way
};

/// Measures how the index of `tree` follows what happens. Nothing is changed in `tree`: the changes
/// are made in a temporary folder that the same index follows. Each of the two runs in a process of
/// its own; the caller must have one thread.
Figures measureLive(const std::string& tree, const LiveEffort& effort);
/// Private memory for following folders, above that of following none.
Figures measureMemoryOfFollowing(const LiveEffort& effort);

}  // namespace zelnor::bench
