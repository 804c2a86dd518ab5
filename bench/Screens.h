#pragma once

#include <string>

namespace zelnor::bench {

/// Draws every state of the search panel, filled with fixed data, into PNG files in `folder`, at
/// scale 1 and 2. Answers their names, a line each. Needs an application whose style is still.
std::string drawScreens(const std::string& folder);

}  // namespace zelnor::bench
