#pragma once

#include <string>

#include "bench/Figures.h"
#include "bench/PaintWatch.h"

namespace zelnor::bench {

/// Runs the application on an index of its own and types `text` into its window, again and again,
/// while it indexes `tree` (an absolute path) from nothing; at least once.
Figures measureTyping(PaintWatch& application, const std::string& tree, const std::string& text);

}  // namespace zelnor::bench
