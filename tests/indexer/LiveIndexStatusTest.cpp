#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "indexer/LiveIndexStatus.h"

namespace zelnor {
namespace {

using testing::ElementsAre;
using Observation = LiveIndexStatus::Observation;

class LiveIndexStatusTest : public testing::Test {
 protected:
  std::optional<LiveIndexStatus> status_{std::in_place};
  std::vector<int> told_;  ///< who was, in order

  [[nodiscard]] Observation observe(int name) {
    return status_->observe([this, name](const IndexStatus&) { told_.push_back(name); });
  }
  std::vector<int> toldByAnUpdate() {
    told_.clear();
    status_->update([](IndexStatus&) {});
    return told_;
  }
};

TEST_F(LiveIndexStatusTest, TellsEveryObserverThatIsThereTheNewStatus) {
  std::int64_t seen = 0;
  const auto first = status_->observe([&](const IndexStatus& status) { seen = status.totalFiles; });
  auto second = observe(2);
  auto third = observe(3);
  status_->update([](IndexStatus& status) { status.totalFiles = 7; });
  EXPECT_EQ(seen, 7);
  EXPECT_THAT(told_, ElementsAre(2, 3));

  auto moved = std::move(second);
  EXPECT_THAT(toldByAnUpdate(), ElementsAre(2, 3)) << "the handle may move";
  third = std::move(moved);
  EXPECT_THAT(toldByAnUpdate(), ElementsAre(2)) << "the one that was replaced is forgotten";
  third = {};
  EXPECT_THAT(toldByAnUpdate(), ElementsAre());
}

TEST_F(LiveIndexStatusTest, ObserversMayComeAndGoWhileTheyAreTold) {
  std::vector<Observation> others;
  auto second = std::optional<Observation>();
  auto self = std::optional<Observation>();
  const auto first = status_->observe([&](const IndexStatus&) {
    told_.push_back(1);
    second.reset();
    if (others.empty()) others.push_back(observe(4));
  });
  second = observe(2);
  self = status_->observe([&, big = std::vector<int>(100, 3)](const IndexStatus&) {
    self.reset();
    told_.push_back(big.back());
  });
  EXPECT_THAT(toldByAnUpdate(), ElementsAre(1, 3));
  EXPECT_THAT(toldByAnUpdate(), ElementsAre(1, 4)) << "told from the next change on";
}

TEST_F(LiveIndexStatusTest, AnObservationMayOutliveTheStatus) {
  auto observation = observe(1);
  status_.reset();
  observation = {};
  EXPECT_THAT(told_, ElementsAre());
}

}  // namespace
}  // namespace zelnor
