// Work on files on the virtual clock: each piece takes its time, and all of it can stall.
#pragma once

#include <chrono>
#include <deque>
#include <memory>

#include "platform/EventQueue.h"
#include "platform/FileWorker.h"

namespace quorl {

class VirtualFileWorker : public FileWorker {
 public:
  // `queue` outlives the worker.
  explicit VirtualFileWorker(EventQueue& queue);
  ~VirtualFileWorker() override { Finish(); }

  void Run(Task work, Task done) override;
  void Finish() override;

  // What each piece of work takes from now on, 1 ms at creation.
  void SetCallTime(std::chrono::milliseconds time) { callTime_ = time; }
  // Nothing is worked on until Resume.
  void Stall();
  void Resume();
  int Waiting() const { return static_cast<int>(line_.size()); }

 private:
  struct Job {
    Task Work, Done;
  };

  void Begin();
  void WorkOne();

  EventQueue& queue_;
  std::unique_ptr<QueueTimer> timer_;
  std::chrono::milliseconds callTime_{1};
  std::deque<Job> line_;
  bool stalled_ = false;
};

}  // namespace quorl
