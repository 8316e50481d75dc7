#include "platform/linux/system/LinuxFileWorker.h"

#include <utility>

namespace quorl {

LinuxFileWorker::LinuxFileWorker(EventQueue& queue) : finished_(queue.CreateSignal([this] { TellDone(); })) {}

LinuxFileWorker::~LinuxFileWorker() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard guard(mutex_);
    ends_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void LinuxFileWorker::Run(Task work, Task done) {
  {
    const std::lock_guard guard(mutex_);
    waiting_.push_back({std::move(work), std::move(done)});
  }
  changed_.notify_all();
  if (!thread_.joinable()) thread_ = std::thread([this] { Work(); });
}

void LinuxFileWorker::Finish() {
  std::unique_lock guard(mutex_);
  changed_.wait(guard, [this] { return waiting_.empty(); });
}

void LinuxFileWorker::Work() {
  std::unique_lock guard(mutex_);
  for (;;) {
    changed_.wait(guard, [this] { return ends_ || !waiting_.empty(); });
    if (waiting_.empty()) return;
    Task work = std::move(waiting_.front().Work);
    guard.unlock();
    work();
    work = nullptr;  // what it holds may take its time to close
    guard.lock();
    done_.push_back(std::move(waiting_.front().Done));
    waiting_.pop_front();
    changed_.notify_all();
    finished_->Raise();
  }
}

// One by one: a handler may let the queue deliver the next ones.
void LinuxFileWorker::TellDone() {
  for (;;) {
    Task task;
    {
      const std::lock_guard guard(mutex_);
      if (done_.empty()) return;
      task = std::move(done_.front());
      done_.pop_front();
    }
    task();
  }
}

}  // namespace quorl
