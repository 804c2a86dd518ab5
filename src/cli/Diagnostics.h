#pragma once

#include <string>
#include <string_view>

#include "store/DatabaseError.h"

namespace zelnor::cli {

/// Prints one line on standard error, with the program's name before it.
void report(std::string_view message);

/// What went wrong with the index, and what to do about it.
std::string described(const DatabaseError& error);

}  // namespace zelnor::cli
