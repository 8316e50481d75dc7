// The event queue on a virtual clock: an hour of timers runs as fast as its handlers do.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/EventQueue.h"
#include "platform/virtual/VirtualClock.h"

namespace quorl {

// Events run in the order of their time, and of their arrival where times are equal. The queue must outlive
// its timers and signals.
class VirtualEventQueue : public EventQueue {
 public:
  explicit VirtualEventQueue(VirtualClock& clock);
  ~VirtualEventQueue() override;

  void Post(Task task) override;
  // Runs what was due at the call; what its handlers post waits for the next one.
  void Yield() override;
  // The clock jumps to the next event, or by `atMost` where that comes first.
  void Wait(std::chrono::milliseconds atMost) override;
  std::unique_ptr<QueueTimer> CreateTimer(Task onTick) override;
  std::unique_ptr<QueueSignal> CreateSignal(Task onRaise) override;
  std::unique_ptr<FileWatch> WatchFile(int, Task) override { return std::make_unique<FileWatch>(); }

  // Runs everything that comes due up to and including that moment, with the clock at each event's own time.
  void AdvanceBy(std::chrono::microseconds step);
  void AdvanceTo(std::int64_t microsecond);

  // Time that each Yield lets pass, for code that polls until something happens. 0 at creation.
  void SetYieldTime(std::chrono::microseconds time) { yieldTime_ = time; }
  // How often Yield was called, by Wait and the Advance routines too.
  std::int64_t YieldCount() const { return yields_; }
  // Nothing is queued: no task, no running timer, no raised signal.
  bool IsIdle() const;

 private:
  class Timer;
  class Signal;
  struct SignalState;
  using Key = std::pair<std::int64_t, std::uint64_t>;  // due microsecond, arrival

  Key Insert(std::int64_t due, Task task);
  void CollectSignals();
  bool SignalRaised() const;

  VirtualClock& clock_;
  std::map<Key, Task> events_;
  std::vector<std::weak_ptr<SignalState>> signals_;
  std::uint64_t arrivals_ = 0;
  std::chrono::microseconds yieldTime_{0};
  std::int64_t yields_ = 0;
};

}  // namespace quorl
