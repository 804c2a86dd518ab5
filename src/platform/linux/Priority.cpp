#include "platform/Priority.h"

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zelnor::platform {

namespace {

// From linux/ioprio.h, which does not compile as C++ on every version of the kernel's headers.
constexpr int kIoprioWhoProcess = 1;
constexpr int kIoprioClassIdle = 3;
constexpr int kIoprioClassShift = 13;

}  // namespace

void enterBackgroundPriority() {
  // Both calls take 0 for the calling thread, not the process: sched(7), ioprio_set(2).
  constexpr sched_param kNoRealTimePriority{};
  ::sched_setscheduler(/*pid=*/0, SCHED_IDLE, &kNoRealTimePriority);
  ::syscall(SYS_ioprio_set, kIoprioWhoProcess, /*who=*/0, kIoprioClassIdle << kIoprioClassShift);
}

}  // namespace zelnor::platform
