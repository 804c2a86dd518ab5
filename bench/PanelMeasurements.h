#pragma once

#include <string>

#include "bench/Figures.h"
#include "bench/PaintWatch.h"

namespace zelnor::bench {

/// How the panel keeps up on the index in folder `data`: from a key to what it finds, scrolling,
/// opening its parts, what many searches leave in memory, and coming when the hot key is pressed;
/// this also while `tree` is indexed in this process, unless that is empty.
Figures measurePanel(PaintWatch& application, const std::string& data, const std::string& tree);

}  // namespace zelnor::bench
