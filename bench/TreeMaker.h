#pragma once

#include <cstdint>
#include <string>

#include "bench/TreePlan.h"

namespace zelnor::bench {

/// Makes what `plan` says below `folder`, which is created if it is missing. Files are sparse: they
/// take no room but their inodes. Answers how many entries were made. Throws std::system_error,
/// also when `folder` is not empty.
std::uint64_t makeTree(const std::string& folder, TreePlan plan);

}  // namespace zelnor::bench
