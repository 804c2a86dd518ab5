#include "platform/Priority.h"

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zelnor::platform {

namespace {

// From linux/ioprio.h, which newer kernels ship in a form that is no C++.
constexpr int kWhoProcess = 1;
constexpr int kIdleClass = 3;
constexpr int kClassShift = 13;

}  // namespace

void enterBackgroundPriority() {
  // Both calls take 0 for the calling thread, not the process: sched(7), ioprio_set(2).
  constexpr sched_param kNoRealTimePriority{};
  ::sched_setscheduler(/*pid=*/0, SCHED_IDLE, &kNoRealTimePriority);
  ::syscall(SYS_ioprio_set, kWhoProcess, /*who=*/0, kIdleClass << kClassShift);
}

}  // namespace zelnor::platform
