// The one thread's queue of events: posted tasks, timers and signals from other threads.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace quorl {

// Repeating timer of an EventQueue. Created stopped; destroying it stops it. A tick that comes due while
// the thread is busy is delivered once, late ticks do not pile up. The tick handler may Start, Stop or
// destroy the timer.
class QueueTimer {
 public:
  virtual ~QueueTimer() = default;
  // First tick after `period`, then each `period`; restarts the count where it already runs. Period > 0.
  virtual void Start(std::chrono::milliseconds period) = 0;
  virtual void Stop() = 0;
};

// Wakes the queue from any thread. Raise never blocks and never allocates, so that an audio thread may call
// it; several raises before the queue looks are delivered as one call of the handler.
class QueueSignal {
 public:
  virtual ~QueueSignal() = default;
  virtual void Raise() = 0;
};

// Stops its watch when destroyed; the handler itself may destroy it.
class FileWatch {
 public:
  virtual ~FileWatch() = default;
};

// All handlers run on the thread that runs the queue. Everything but QueueSignal::Raise belongs to it.
class EventQueue {
 public:
  using Task = std::function<void()>;

  virtual ~EventQueue() = default;
  // Runs `task` once, after what is already queued.
  virtual void Post(Task task) = 0;
  // Delivers what is due now, in order, and returns; may be called from inside a handler.
  virtual void Yield() = 0;
  // Waits until something is due or `atMost` has passed, then delivers as Yield does.
  virtual void Wait(std::chrono::milliseconds atMost) = 0;
  virtual std::unique_ptr<QueueTimer> CreateTimer(Task onTick) = 0;
  virtual std::unique_ptr<QueueSignal> CreateSignal(Task onRaise) = 0;
  // `onReadable` runs whenever the open file or socket can be read without waiting, also at its end: a
  // handler that reads 0 bytes drops the watch. `file`, the system's number for it, stays the caller's, and
  // outlives the watch. On a virtual machine there are none, and it never runs.
  virtual std::unique_ptr<FileWatch> WatchFile(int file, Task onReadable) = 0;
};

}  // namespace quorl
