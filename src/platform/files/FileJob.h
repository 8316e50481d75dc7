// Work on files that takes long and goes on in steps, so that it can be done beside other work, and be
// stopped.
#pragma once

#include "support/Error.h"

namespace quorl {

// Steps may be done on another thread than the one that made the job, one after the other.
class FileJob {
 public:
  virtual ~FileJob() = default;
  // A piece of the work, some milliseconds of it. Not called any more once it has failed or IsDone.
  virtual Failure Step() = 0;
  virtual bool IsDone() const = 0;
  virtual double Progress() const = 0;  // 0 to 1
  // Takes back what is half done. Nothing is called any more.
  virtual void Discard() = 0;
};

// All steps one after the other, for who can wait. A job that fails is discarded.
inline Failure Finish(FileJob& job) {
  Failure failure;
  while (!job.IsDone() && !failure) failure = job.Step();
  if (failure) job.Discard();
  return failure;
}

}  // namespace quorl
