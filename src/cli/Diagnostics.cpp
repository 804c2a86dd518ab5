#include "cli/Diagnostics.h"

#include <iostream>

#include "cli/OutputFormat.h"

namespace zelnor::cli {

void report(std::string_view message) {
  // Messages quote file names and statements, which may hold line breaks and worse.
  std::cerr << "zelnor-find: " << visible(message) << '\n';
}

std::string described(const DatabaseError& error) {
  return error.what() +
         std::string(
             "; try again, and if it stays so move the index away and run zelnor-find --rebuild");
}

}  // namespace zelnor::cli
