// The event queue on poll: what the command line programs run on.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/EventQueue.h"

namespace quorl {

// Tasks, timers, signals and watched files share one line: what comes due is queued behind what is there,
// timers in the order of their due times. A Yield from inside a handler goes on with that same line, so
// nothing is overtaken. Delivery stops at what was due when Yield or Wait began: a task that posts itself
// starves nobody.
class LinuxEventQueue : public EventQueue {
 public:
  LinuxEventQueue();
  ~LinuxEventQueue() override;

  void Post(Task task) override;
  void Yield() override;
  void Wait(std::chrono::milliseconds atMost) override;
  std::unique_ptr<QueueTimer> CreateTimer(Task onTick) override;
  // Raise is one write to an eventfd: it may also be called from a signal handler, and leaves errno alone.
  // Where the process has no file descriptor left, this throws std::system_error.
  std::unique_ptr<QueueSignal> CreateSignal(Task onRaise) override;

  std::unique_ptr<FileWatch> WatchFile(int file, Task onReadable) override;

  // Delivers until a handler calls Quit. What was due together with that handler is delivered first.
  void Run();
  void Quit();

 private:
  struct TimerState;
  struct WatchState;
  class Timer;
  class Signal;
  class Watch;
  struct Entry {
    std::uint64_t Number = 0;
    Task Run;
  };

  void Enqueue(Task task);
  std::shared_ptr<WatchState> AddWatch(int file, Task onReadable);
  // Queues what is due; waits for it no longer than `microseconds`, and not at all where something is queued.
  void Collect(std::int64_t microseconds);
  std::int64_t NextTick() const;
  void CollectTimers();
  void Deliver();

  std::deque<Entry> line_;
  std::uint64_t lastNumber_ = 0;
  std::vector<std::weak_ptr<TimerState>> timers_;
  std::vector<std::weak_ptr<WatchState>> watches_;
  bool quit_ = false;
};

}  // namespace quorl
