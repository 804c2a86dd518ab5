#pragma once

#include <string>

#include "bench/Figures.h"
#include "bench/FollowedIndex.h"

namespace zelnor::bench {

/// Measures how long it takes, after a start, to compare `tree` with an index in which nothing is
/// missing and to follow it, against a bare walk; medians of `repeat` runs of both in turns. Each
/// runs in a process of its own; the caller must have one thread.
Figures measureReconciling(const std::string& tree, int repeat, FollowedIndex::Source source);

}  // namespace zelnor::bench
