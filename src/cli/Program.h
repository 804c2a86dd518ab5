#pragma once

#include <string>
#include <vector>

#include "cli/ExitStatus.h"

namespace zelnor::cli {

/// The whole program, given its arguments without its name. Errors end as a line on standard error.
ExitStatus run(const std::vector<std::string>& arguments);

}  // namespace zelnor::cli
