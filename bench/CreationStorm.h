#pragma once

#include <string>

#include "bench/Random.h"

namespace zelnor::bench {

/// Empty files created at a steady rate, a thousand a folder.
struct CreationStorm {
  std::string folder;  ///< is made
  int perSecond = 0;
  double seconds = 0;

  /// Takes `seconds`, or as long as the file system takes.
  void run(Random& random) const;
};

}  // namespace zelnor::bench
