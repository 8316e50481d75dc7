#include "platform/virtual/VirtualEventQueue.h"

#include <algorithm>
#include <atomic>
#include <optional>

namespace quorl {

class VirtualEventQueue::Timer : public QueueTimer {
 public:
  Timer(VirtualEventQueue& queue, Task onTick)
      : queue_(queue), onTick_(std::make_shared<const Task>(std::move(onTick))) {}
  ~Timer() override { Disarm(); }

  void Start(std::chrono::milliseconds period) override {
    Disarm();
    period_ = std::chrono::microseconds{period}.count();
    Arm(queue_.clock_.Microseconds() + period_);
  }
  void Stop() override { Disarm(); }

 private:
  void Arm(std::int64_t due) {
    due_ = due;
    key_ = queue_.Insert(due, [this] { Tick(); });
  }
  void Disarm() {
    if (key_) {
      queue_.events_.erase(*key_);
      key_.reset();
    }
  }
  void Tick() {
    const std::int64_t missed = (queue_.clock_.Microseconds() - due_) / period_;
    Arm(due_ + (missed + 1) * period_);
    const auto handler = onTick_;  // stays alive where the handler destroys the timer
    (*handler)();
  }

  VirtualEventQueue& queue_;
  std::shared_ptr<const Task> onTick_;
  std::optional<Key> key_;
  std::int64_t period_ = 0;
  std::int64_t due_ = 0;
};

struct VirtualEventQueue::SignalState {
  std::atomic<bool> Raised = false;
  Task OnRaise;
};

class VirtualEventQueue::Signal : public QueueSignal {
 public:
  explicit Signal(std::shared_ptr<SignalState> state) : state_(std::move(state)) {}
  void Raise() override { state_->Raised.store(true, std::memory_order_release); }

 private:
  std::shared_ptr<SignalState> state_;
};

VirtualEventQueue::VirtualEventQueue(VirtualClock& clock) : clock_(clock) {}
VirtualEventQueue::~VirtualEventQueue() = default;

VirtualEventQueue::Key VirtualEventQueue::Insert(std::int64_t due, Task task) {
  const Key key{due, ++arrivals_};
  events_.emplace(key, std::move(task));
  return key;
}

void VirtualEventQueue::Post(Task task) {
  Insert(clock_.Microseconds(), std::move(task));
}

void VirtualEventQueue::CollectSignals() {
  std::erase_if(signals_, [](const auto& signal) { return signal.expired(); });
  for (const auto& weak : signals_) {
    const auto state = weak.lock();
    if (state->Raised.exchange(false, std::memory_order_acquire)) {
      Post([weak] {
        if (const auto alive = weak.lock()) alive->OnRaise();
      });
    }
  }
}

bool VirtualEventQueue::SignalRaised() const {
  return std::any_of(signals_.begin(), signals_.end(), [](const auto& weak) {
    const auto state = weak.lock();
    return state && state->Raised.load(std::memory_order_acquire);
  });
}

void VirtualEventQueue::Yield() {
  ++yields_;
  clock_.Advance(yieldTime_);
  CollectSignals();
  const std::int64_t now = clock_.Microseconds();
  const std::uint64_t last = arrivals_;
  for (;;) {
    const auto next = std::find_if(events_.begin(), events_.end(),
                                   [last](const auto& event) { return event.first.second <= last; });
    if (next == events_.end() || next->first.first > now) return;
    const Task task = std::move(next->second);
    events_.erase(next);
    task();
  }
}

void VirtualEventQueue::Wait(std::chrono::milliseconds atMost) {
  const std::int64_t now = clock_.Microseconds();
  std::int64_t until = now + std::chrono::microseconds{atMost}.count();
  if (SignalRaised()) {
    until = now;
  } else if (!events_.empty()) {
    until = std::min(until, events_.begin()->first.first);
  }
  clock_.Advance(std::chrono::microseconds{until - now});
  Yield();
}

void VirtualEventQueue::AdvanceTo(std::int64_t microsecond) {
  while (SignalRaised() || (!events_.empty() && events_.begin()->first.first <= microsecond)) {
    if (!SignalRaised()) {
      clock_.Advance(std::chrono::microseconds{events_.begin()->first.first - clock_.Microseconds()});
    }
    Yield();
  }
  clock_.Advance(std::chrono::microseconds{microsecond - clock_.Microseconds()});
}

void VirtualEventQueue::AdvanceBy(std::chrono::microseconds step) {
  AdvanceTo(clock_.Microseconds() + step.count());
}

bool VirtualEventQueue::IsIdle() const {
  return events_.empty() && !SignalRaised();
}

std::unique_ptr<QueueTimer> VirtualEventQueue::CreateTimer(Task onTick) {
  return std::make_unique<Timer>(*this, std::move(onTick));
}

std::unique_ptr<QueueSignal> VirtualEventQueue::CreateSignal(Task onRaise) {
  auto state = std::make_shared<SignalState>();
  state->OnRaise = std::move(onRaise);
  signals_.push_back(state);
  return std::make_unique<Signal>(std::move(state));
}

}  // namespace quorl
