// Ends the program in good order where the system or a terminal asks for it.
#pragma once

#include <functional>
#include <memory>

#include "platform/EventQueue.h"

namespace quorl {

// One of these at a time. From its construction SIGTERM, SIGINT and SIGHUP run `onEnd` on the queue's thread;
// a second one of the same kind ends the process as usual, should the first not be heard.
class TerminationSignals {
 public:
  TerminationSignals(EventQueue& queue, std::function<void()> onEnd);
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  std::unique_ptr<QueueSignal> raised_;
};

}  // namespace quorl
