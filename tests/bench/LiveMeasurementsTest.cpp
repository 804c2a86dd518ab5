#include <algorithm>

#include <gtest/gtest.h>

#include "bench/LiveMeasurements.h"
#include "bench/ReconcileMeasurements.h"
#include "bench/TreeMaker.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::bench {
namespace {

constexpr std::uint64_t kEntries = 200;

std::optional<double> valueOf(const Figures& figures, const std::string& name) {
  const auto found = std::ranges::find(figures, name, &Figure::name);
  return found != figures.end() ? found->value : std::nullopt;
}

class LiveMeasurementsTest : public testing::Test {
 protected:
  LiveMeasurementsTest() { makeTree(tree_.path(), TreePlan(kEntries, /*seed=*/1)); }

  const test::TemporaryFolder tree_;
};

TEST_F(LiveMeasurementsTest, TheIndexBecomesCorrectAfterEveryChange) {
  const LiveEffort effort{.changes = 4,
                          .perSecond = 1'000,
                          .seconds = 0.2,
                          .entries = 100,
                          .folders = 50,
                          .idleSeconds = 0,
                          .seed = 1,
                          .source = std::nullopt};
  const auto figures = measureLive(tree_.path(), effort);
  for (const auto& figure : figures) EXPECT_TRUE(figure.value) << figure.name;
  EXPECT_GT(valueOf(figures, "one change: median"), 0.0);
  EXPECT_GT(valueOf(figures, "moving the unpacked: index correct after the last"), 0.0);
  EXPECT_EQ(valueOf(figures, "full rebuilds"), 0.0);
  EXPECT_GE(valueOf(measureMemoryOfFollowing(effort), "memory: folders followed live"), 50.0);
}

TEST_F(LiveMeasurementsTest, ReconcilingSeesEveryEntry) {
  const auto figures = measureReconciling(tree_.path(), /*repeat=*/1, /*source=*/std::nullopt);
  EXPECT_EQ(valueOf(figures, "entries in the index"), static_cast<double>(kEntries));
  EXPECT_GT(valueOf(figures, "compared and followed"), 0.0);
}

}  // namespace
}  // namespace zelnor::bench
