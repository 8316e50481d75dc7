// The program's event queue on the event loop of Qt.
#pragma once

#include <QTimer>
#include <cstdint>
#include <deque>
#include <memory>

#include "platform/EventQueue.h"

namespace quorl {

// Tasks, timers, signals, widgets and message boxes share Qt's one loop. Tasks run in the order of their
// posting; a Yield from inside a handler goes on with the same line. The application exists before the queue
// and after it.
class QtEventQueue : public EventQueue {
 public:
  QtEventQueue();
  ~QtEventQueue() override;
  QtEventQueue(const QtEventQueue&) = delete;
  QtEventQueue& operator=(const QtEventQueue&) = delete;

  void Post(Task task) override;
  void Yield() override;
  void Wait(std::chrono::milliseconds atMost) override;
  std::unique_ptr<QueueTimer> CreateTimer(Task onTick) override;
  // Raise is one write to an eventfd: it may also be called from a signal handler, and leaves errno alone.
  // Where the process has no file descriptor left, this throws std::system_error.
  std::unique_ptr<QueueSignal> CreateSignal(Task onRaise) override;
  std::unique_ptr<FileWatch> WatchFile(int file, Task onReadable) override;

 private:
  class Timer;
  class Signal;
  class Watch;
  struct Entry {
    std::uint64_t Number = 0;
    Task Run;
  };

  void Deliver();

  std::deque<Entry> line_;
  std::uint64_t lastNumber_ = 0;
  QTimer wake_;
};

}  // namespace quorl
