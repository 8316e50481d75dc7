// A job on files done beside the event queue's thread, other work on files between its steps.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "platform/files/FileJob.h"
#include "platform/files/PostedFiles.h"

namespace quorl {

// All calls belong to the event queue's thread.
class PostedJob {
 public:
  // `worker` outlives this object.
  explicit PostedJob(FileWorker& worker) : worker_(worker) {}
  ~PostedJob() { Stop(); }
  PostedJob(const PostedJob&) = delete;
  PostedJob& operator=(const PostedJob&) = delete;

  // After each step but the last: 0 to 1.
  std::function<void(double)> OnProgress = [](double) {};
  // The job is done, or has failed and taken back what it began. Another one may be started from here.
  std::function<void(Failure)> OnEnd = [](const Failure&) {};

  // Stops the one before. Nobody else touches the job before OnEnd.
  void Start(std::shared_ptr<FileJob> job);
  // The job takes back what it has begun, and nobody is told of it any more.
  void Stop();
  bool IsRunning() const { return run_ != nullptr; }

 private:
  struct Run {
    std::shared_ptr<FileJob> Job;
    std::atomic<bool> Stopped = false;
  };
  struct Report {
    bool Ended = false;
    double Progress = 0.0;
    Failure Fault;
  };
  static Report StepOnce(Run& run);
  void Next();
  void Take(const Report& report);

  FileWorker& worker_;
  std::optional<FileCalls> calls_;  // those of the job that runs
  std::shared_ptr<Run> run_;
};

}  // namespace quorl
