#include "platform/Priority.h"

#include <linux/ioprio.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zelnor::platform {

void enterBackgroundPriority() {
  // Both calls take 0 for the calling thread, not the process: sched(7), ioprio_set(2).
  constexpr sched_param kNoRealTimePriority{};
  ::sched_setscheduler(/*pid=*/0, SCHED_IDLE, &kNoRealTimePriority);
  ::syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, /*who=*/0,
            IOPRIO_PRIO_VALUE(IOPRIO_CLASS_IDLE, /*data=*/0));
}

}  // namespace zelnor::platform
