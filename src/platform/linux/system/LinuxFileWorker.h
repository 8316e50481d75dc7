// A thread that works on files.
#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/EventQueue.h"
#include "platform/FileWorker.h"

namespace quorl {

// The thread begins with the first work.
class LinuxFileWorker final : public FileWorker {
 public:
  // `queue` outlives the worker.
  explicit LinuxFileWorker(EventQueue& queue);
  ~LinuxFileWorker() override;

  void Run(Task work, Task done) override;
  void Finish() override;

 private:
  struct Job {
    Task Work, Done;
  };

  void Work();
  void TellDone();

  std::unique_ptr<QueueSignal> finished_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Job> waiting_;  // the front one is being worked on
  std::deque<Task> done_;
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace quorl
