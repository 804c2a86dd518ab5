#pragma once

#include "cli/IndexLocation.h"
#include "cli/Options.h"
#include "cli/StandardOutput.h"

namespace zelnor::cli {

/// Prints what there is to know about the index. Throws as FindCommand does.
void printStatus(const Options& options, const IndexLocation& location, StandardOutput& output);

}  // namespace zelnor::cli
