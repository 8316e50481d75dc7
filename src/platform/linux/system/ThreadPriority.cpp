#include "platform/linux/system/ThreadPriority.h"

#include <sched.h>

namespace quorl {
namespace {

// Above every normal program, below the sound server's own threads.
constexpr int kPriority = 5;

}  // namespace

bool SetRealTimePriority(bool realTime) {
  sched_param parameter{};
  parameter.sched_priority = realTime ? kPriority : 0;
  // The flag stays in both: taking it back needs privileges.
  const int policy = realTime ? SCHED_FIFO : SCHED_OTHER;
  return sched_setscheduler(0, policy | SCHED_RESET_ON_FORK, &parameter) == 0;
}

}  // namespace quorl
