#include "bench/Statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace zelnor::bench {

double percentile(std::span<const double> sorted, double percent) {
  if (sorted.empty()) return 0;
  const auto rank =
      static_cast<std::size_t>(std::ceil(percent / 100 * static_cast<double>(sorted.size())));
  return sorted[std::clamp<std::size_t>(rank, 1, sorted.size()) - 1];
}

double median(std::vector<double> samples) {
  if (samples.empty()) return 0;
  std::ranges::sort(samples);
  const auto middle = samples.size() / 2;
  return samples.size() % 2 == 1 ? samples[middle] : (samples[middle - 1] + samples[middle]) / 2;
}

Statistics Statistics::of(std::vector<double> samples) {
  std::ranges::sort(samples);
  return {.median = bench::median(samples),
          .p95 = percentile(samples, 95),
          .p99 = percentile(samples, 99)};
}

}  // namespace zelnor::bench
