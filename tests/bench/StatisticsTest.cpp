#include <numeric>
#include <utility>

#include <gtest/gtest.h>

#include "bench/Statistics.h"

namespace zelnor::bench {
namespace {

TEST(Statistics, PercentilesAreSamplesByNearestRankWhateverTheOrder) {
  struct Case {
    std::vector<double> samples;
    Statistics expected;
  };
  std::vector<double> hundred(100);
  std::iota(hundred.rbegin(), hundred.rend(), 1);
  const std::vector<Case> cases{
      {.samples = {}, .expected = {.median = 0, .p95 = 0, .p99 = 0}},
      {.samples = {7}, .expected = {.median = 7, .p95 = 7, .p99 = 7}},
      {.samples = {9, 1, 4}, .expected = {.median = 4, .p95 = 9, .p99 = 9}},
      {.samples = {4, 1, 3, 2}, .expected = {.median = 2.5, .p95 = 4, .p99 = 4}},
      {.samples = hundred, .expected = {.median = 50.5, .p95 = 95, .p99 = 99}},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.samples.size());
    const auto statistics = Statistics::of(one.samples);
    EXPECT_DOUBLE_EQ(statistics.median, one.expected.median);
    EXPECT_DOUBLE_EQ(statistics.p95, one.expected.p95);
    EXPECT_DOUBLE_EQ(statistics.p99, one.expected.p99);
  }
}

}  // namespace
}  // namespace zelnor::bench
