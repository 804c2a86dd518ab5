#pragma once

#include <stdexcept>

namespace zelnor::cli {

/// What ends the program with an error. `what()` is one line for the user that says what to do.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace zelnor::cli
