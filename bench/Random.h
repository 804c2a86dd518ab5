#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

namespace zelnor::bench {

/// A source of random values that gives the same ones for the same seed everywhere: the standard
/// fixes what its engines answer, but not what its distributions make of it.
class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  /// 0 <= value < 1.
  double unit() { return static_cast<double>(engine_() >> 11U) * 0x1.0p-53; }
  /// 0 <= value < bound; 0 if `bound` is 0.
  std::uint64_t below(std::uint64_t bound) { return bound == 0 ? 0 : engine_() % bound; }
  bool chance(double probability) { return unit() < probability; }
  /// Exponentially distributed, of mean 1.
  double exponential() { return -std::log(1.0 - unit()); }
  /// Normally distributed, of mean 0 and deviation 1 (near enough: the sum of twelve uniform
  /// values).
  double normal() {
    double sum = -6;
    for (int i = 0; i < 12; ++i) sum += unit();
    return sum;
  }
  template <class T>
  const T& pick(std::span<const T> choices) {
    return choices[below(choices.size())];
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace zelnor::bench
