#include <chrono>
#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/desktop/StartupId.h"

namespace zelnor::platform {
namespace {

using testing::EndsWith;

TEST(StartupId, IsNewEachTimeAndHoldsTheTime) {
  const auto first = startupId(/*time=*/12345);
  EXPECT_THAT(first, EndsWith("_TIME12345"));
  EXPECT_NE(startupId(/*time=*/12345), first);
}

TEST(StartupId, OnlyATimeOfTheLastMinuteCanBeOfTheLastInput) {
  const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
  const auto server = [now](std::chrono::milliseconds ago) {
    return static_cast<std::uint32_t>((now - ago).count());
  };
  using namespace std::chrono_literals;
  EXPECT_TRUE(isRecentInputTime(server(5s)));
  EXPECT_FALSE(isRecentInputTime(server(10min)));
  EXPECT_FALSE(isRecentInputTime(server(-10min)));
}

}  // namespace
}  // namespace zelnor::platform
