#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <thread>

#include <gtest/gtest.h>

#include "platform/Priority.h"

namespace zelnor::platform {
namespace {

TEST(Priority, OfTheCallingThreadAloneBecomesIdle) {
  constexpr long kIdleIoPriority = 3L << 13;
  const auto ioPriority = [] { return syscall(SYS_ioprio_get, /*which=*/1, /*who=*/0); };
  const auto before = ioPriority();
  std::jthread([&] {
    enterBackgroundPriority();
    EXPECT_EQ(sched_getscheduler(0), SCHED_IDLE);
    EXPECT_EQ(ioPriority(), kIdleIoPriority);
  }).join();
  EXPECT_EQ(sched_getscheduler(0), SCHED_OTHER);
  EXPECT_EQ(ioPriority(), before);
}

}  // namespace
}  // namespace zelnor::platform
