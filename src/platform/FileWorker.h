// Work on files beside the event queue's thread, so that a slow disk holds up neither sound nor panel.
#pragma once

#include <functional>

namespace quorl {

// All calls belong to the event queue's thread.
class FileWorker {
 public:
  using Task = std::function<void()>;

  // Finishes the work it was given; nobody is told of it any more.
  virtual ~FileWorker() = default;
  // Runs `work` after all work given before, then `done` from the event queue.
  virtual void Run(Task work, Task done) = 0;
  // Waits until the work given so far is finished; what it brought is still told from the queue.
  virtual void Finish() = 0;
};

}  // namespace quorl
