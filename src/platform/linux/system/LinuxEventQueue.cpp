#include "platform/linux/system/LinuxEventQueue.h"

#include "platform/linux/system/LinuxClock.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>

namespace quorl {
namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
constexpr std::chrono::hours kLongestWait{1};

template <class T>
void DropExpired(std::vector<std::weak_ptr<T>>& list) {
  std::erase_if(list, [](const std::weak_ptr<T>& item) { return item.expired(); });
}

}  // namespace

struct LinuxEventQueue::TimerState {
  Task OnTick;
  std::int64_t Period = 0;  // microseconds
  std::int64_t Due = kNever;
  bool Queued = false;
  std::uint64_t Starts = 0;  // a queued tick belongs to one Start and dies with the next Start or Stop

  void Forget() {
    ++Starts;
    Due = kNever;
    Queued = false;
  }

  void Tick(std::uint64_t start) {
    if (start != Starts) return;
    Queued = false;
    const std::int64_t late = std::max<std::int64_t>(LinuxClock{}.Microseconds() - Due, 0);
    Due += Period * (late / Period + 1);
    OnTick();
  }
};

class LinuxEventQueue::Timer : public QueueTimer {
 public:
  explicit Timer(std::shared_ptr<TimerState> state) : state_(std::move(state)) {}
  ~Timer() override { state_->Forget(); }

  void Start(std::chrono::milliseconds period) override {
    Stop();
    state_->Period = std::max<std::int64_t>(std::chrono::microseconds(period).count(), 1);
    state_->Due = LinuxClock{}.Microseconds() + state_->Period;
  }

  void Stop() override { state_->Forget(); }

 private:
  std::shared_ptr<TimerState> state_;
};

struct LinuxEventQueue::WatchState {
  int File = -1;
  Task OnReadable;
  bool Queued = false;
  bool Dropped = false;
};

class LinuxEventQueue::Watch : public FileWatch {
 public:
  explicit Watch(std::shared_ptr<WatchState> state) : state_(std::move(state)) {}
  ~Watch() override { state_->Dropped = true; }

 private:
  std::shared_ptr<WatchState> state_;
};

class LinuxEventQueue::Signal : public QueueSignal {
 public:
  Signal(LinuxEventQueue& queue, Task onRaise) : file_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (file_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
    watch_ = queue.AddWatch(file_, [file = file_, handler = std::move(onRaise)] {
      std::uint64_t raises = 0;
      // Emptied before the handler looks, so that a raise from then on is a call of its own.
      if (read(file, &raises, sizeof raises) == sizeof raises) handler();
    });
  }
  ~Signal() override {
    watch_->Dropped = true;
    close(file_);
  }

  void Raise() override {
    const int error = errno;
    const std::uint64_t one = 1;
    // It can only fail with the counter full, and then the queue wakes anyway.
    [[maybe_unused]] const ssize_t written = write(file_, &one, sizeof one);
    errno = error;
  }

 private:
  int file_;
  std::shared_ptr<WatchState> watch_;
};

LinuxEventQueue::LinuxEventQueue() = default;
LinuxEventQueue::~LinuxEventQueue() = default;

void LinuxEventQueue::Enqueue(Task task) {
  line_.push_back({++lastNumber_, std::move(task)});
}

void LinuxEventQueue::Post(Task task) {
  Enqueue(std::move(task));
}

std::unique_ptr<QueueTimer> LinuxEventQueue::CreateTimer(Task onTick) {
  auto state = std::make_shared<TimerState>();
  state->OnTick = std::move(onTick);
  timers_.push_back(state);
  return std::make_unique<Timer>(std::move(state));
}

std::unique_ptr<QueueSignal> LinuxEventQueue::CreateSignal(Task onRaise) {
  return std::make_unique<Signal>(*this, std::move(onRaise));
}

std::shared_ptr<LinuxEventQueue::WatchState> LinuxEventQueue::AddWatch(int file, Task onReadable) {
  auto state = std::make_shared<WatchState>();
  state->File = file;
  state->OnReadable = std::move(onReadable);
  watches_.push_back(state);
  return state;
}

std::unique_ptr<FileWatch> LinuxEventQueue::WatchFile(int file, Task onReadable) {
  return std::make_unique<Watch>(AddWatch(file, std::move(onReadable)));
}

std::int64_t LinuxEventQueue::NextTick() const {
  std::int64_t next = kNever;
  for (const auto& item : timers_) {
    if (const auto timer = item.lock(); timer && !timer->Queued) next = std::min(next, timer->Due);
  }
  return next;
}

void LinuxEventQueue::CollectTimers() {
  const std::int64_t now = LinuxClock{}.Microseconds();
  std::vector<std::shared_ptr<TimerState>> due;
  for (const auto& item : timers_) {
    if (auto timer = item.lock(); timer && !timer->Queued && timer->Due <= now)
      due.push_back(std::move(timer));
  }
  std::stable_sort(due.begin(), due.end(), [](const auto& a, const auto& b) { return a->Due < b->Due; });
  for (const auto& timer : due) {
    timer->Queued = true;
    Enqueue([timer, start = timer->Starts] { timer->Tick(start); });
  }
}

void LinuxEventQueue::Collect(std::int64_t microseconds) {
  DropExpired(timers_);
  DropExpired(watches_);
  std::vector<pollfd> files;
  std::vector<std::shared_ptr<WatchState>> watched;
  files.reserve(watches_.size());
  watched.reserve(watches_.size());
  for (const auto& item : watches_) {
    auto watch = item.lock();
    if (!watch || watch->Queued || watch->Dropped) continue;
    files.push_back({watch->File, POLLIN, 0});
    watched.push_back(std::move(watch));
  }

  const std::int64_t next = NextTick();
  if (next != kNever) microseconds = std::min(microseconds, next - LinuxClock{}.Microseconds());
  if (!line_.empty() || microseconds < 0) microseconds = 0;
  const timespec timeout{static_cast<time_t>(microseconds / 1000000),
                         static_cast<long>(microseconds % 1000000 * 1000)};
  const int ready = ppoll(files.data(), files.size(), &timeout, nullptr);

  CollectTimers();
  for (std::size_t i = 0; ready > 0 && i < files.size(); ++i) {
    if (files[i].revents == 0) continue;
    watched[i]->Queued = true;
    Enqueue([watch = watched[i]] {
      if (watch->Dropped) return;
      watch->Queued = false;
      watch->OnReadable();
    });
  }
}

void LinuxEventQueue::Deliver() {
  const std::uint64_t last = lastNumber_;
  while (!line_.empty() && line_.front().Number <= last) {
    const Task run = std::move(line_.front().Run);
    line_.pop_front();
    run();
  }
}

void LinuxEventQueue::Yield() {
  Collect(0);
  Deliver();
}

void LinuxEventQueue::Wait(std::chrono::milliseconds atMost) {
  const auto longest =
      std::clamp(atMost, std::chrono::milliseconds(0), std::chrono::milliseconds(kLongestWait));
  const std::int64_t end = LinuxClock{}.Microseconds() + std::chrono::microseconds(longest).count();
  // A caught Unix signal ends the poll early with nothing due.
  do {
    Collect(end - LinuxClock{}.Microseconds());
  } while (line_.empty() && LinuxClock{}.Microseconds() < end);
  Deliver();
}

void LinuxEventQueue::Run() {
  quit_ = false;
  while (!quit_) Wait(kLongestWait);
  quit_ = false;
}

void LinuxEventQueue::Quit() {
  quit_ = true;
}

}  // namespace quorl
