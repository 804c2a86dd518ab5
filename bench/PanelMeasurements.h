#pragma once

#include <string>

#include "bench/Figures.h"
#include "bench/PaintWatch.h"

namespace zelnor::bench {

/// How the panel keeps up on the index in folder `data`: from a key to what it finds, scrolling,
/// opening its parts, and what many searches leave in memory.
Figures measurePanel(PaintWatch& application, const std::string& data);

}  // namespace zelnor::bench
