#include "platform/virtual/VirtualFileWorker.h"

#include <utility>

namespace quorl {

VirtualFileWorker::VirtualFileWorker(EventQueue& queue)
    : queue_(queue), timer_(queue.CreateTimer([this] { WorkOne(); })) {}

void VirtualFileWorker::Run(Task work, Task done) {
  line_.push_back({std::move(work), std::move(done)});
  if (line_.size() == 1) Begin();
}

void VirtualFileWorker::Begin() {
  timer_->Stop();
  if (!stalled_ && !line_.empty()) timer_->Start(callTime_);
}

void VirtualFileWorker::WorkOne() {
  Job job = std::move(line_.front());
  line_.pop_front();
  Begin();
  job.Work();
  queue_.Post(std::move(job.Done));
}

void VirtualFileWorker::Finish() {
  while (!line_.empty()) WorkOne();
}

void VirtualFileWorker::Stall() {
  stalled_ = true;
  timer_->Stop();
}

void VirtualFileWorker::Resume() {
  stalled_ = false;
  Begin();
}

}  // namespace quorl
