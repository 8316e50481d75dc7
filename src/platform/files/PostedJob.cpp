#include "platform/files/PostedJob.h"

#include <utility>

namespace quorl {

void PostedJob::Start(std::shared_ptr<FileJob> job) {
  Stop();
  run_ = std::make_shared<Run>();
  run_->Job = std::move(job);
  calls_.emplace(worker_);
  Next();
}

void PostedJob::Stop() {
  if (!run_) return;
  run_->Stopped = true;
  calls_.reset();
  worker_.Run([run = std::move(run_)] { run->Job->Discard(); }, [] {});
  run_.reset();
}

// A step that was waiting behind other work when the job was stopped does nothing any more.
PostedJob::Report PostedJob::StepOnce(Run& run) {
  if (run.Stopped) return {};
  const Failure failure = run.Job->Step();
  if (failure) run.Job->Discard();
  return {failure || run.Job->IsDone(), run.Job->Progress(), failure};
}

void PostedJob::Next() {
  calls_->Make<Report>([run = run_] { return StepOnce(*run); },
                       [this](const Report& report) { Take(report); });
}

void PostedJob::Take(const Report& report) {
  if (!report.Ended) {
    Next();
    OnProgress(report.Progress);
    return;
  }
  run_.reset();
  OnEnd(report.Fault);
}

}  // namespace quorl
