// A panel's timer: ticks every Interval while Enabled, on the event queue's thread.
#pragma once

#include <functional>
#include <memory>

#include "platform/EventQueue.h"

namespace quorl {

// Setting the interval or enabling it starts the count anew, so that a handler that disables its timer and is
// armed again later makes a one-shot of it. An interval of 0 never ticks.
class Timer {
 public:
  Timer(EventQueue& queue, std::function<void()> onTimer) : timer_(queue.CreateTimer(std::move(onTimer))) {}

  int Interval() const { return interval_; }  // milliseconds
  bool Enabled() const { return enabled_; }
  void SetInterval(int milliseconds) {
    interval_ = milliseconds;
    Apply();
  }
  void SetEnabled(bool enabled) {
    enabled_ = enabled;
    Apply();
  }

 private:
  void Apply() {
    if (enabled_ && interval_ > 0) {
      timer_->Start(std::chrono::milliseconds(interval_));
    } else {
      timer_->Stop();
    }
  }

  std::unique_ptr<QueueTimer> timer_;
  int interval_ = 0;
  bool enabled_ = false;
};

}  // namespace quorl
