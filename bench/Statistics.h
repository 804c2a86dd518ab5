#pragma once

#include <span>
#include <vector>

namespace zelnor::bench {

/// What many measurements of one thing come to.
struct Statistics {
  double median = 0;
  double p95 = 0;
  double p99 = 0;

  /// All zero without samples.
  static Statistics of(std::vector<double> samples);
};

/// The smallest sample that at least `percent` of the samples do not exceed (the nearest-rank
/// method), of samples in ascending order; 0 without samples.
double percentile(std::span<const double> sorted, double percent);

/// The middle sample, or the mean of the two in the middle; 0 without samples.
double median(std::vector<double> samples);

}  // namespace zelnor::bench
