// Scheduling of the thread that carries the signal.
#pragma once

namespace quorl {

// Asks for real-time scheduling of the calling thread (`realTime`), or gives it back. False where the machine
// refuses, which is common and harmless: the receiver runs on with less margin. Processes started from the
// thread are scheduled normally.
bool SetRealTimePriority(bool realTime);

}  // namespace quorl
