#pragma once

#include <stdexcept>

namespace zelnor::platform {

/// Why something could not be done with a file, in the system's own words for users (UTF-8).
class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace zelnor::platform
