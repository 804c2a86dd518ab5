#pragma once

#include <string>
#include <vector>

#include "bench/IndexProbe.h"
#include "bench/Random.h"

namespace zelnor::bench {

/// Single changes to files of one folder, at random times: created, written to, renamed, removed in
/// turns.
class LatencyChanges {
 public:
  /// Makes the files that `count` changes need in `folder`, which is made.
  LatencyChanges(std::string folder, int count);

  /// Makes the changes; answers, for each, the seconds from before its system call until the index
  /// showed it. Throws std::runtime_error if one does not show.
  std::vector<double> run(const IndexProbe& probe, Random& random) const;

 private:
  [[nodiscard]] std::string file(int number) const;
  /// Answers what holds once the index shows the change.
  [[nodiscard]] SelectStatement make(int number) const;

  std::string folder_;
  int count_;
};

}  // namespace zelnor::bench
