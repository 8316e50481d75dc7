#include "desktop/qt/QtEventQueue.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <cerrno>
#include <optional>
#include <system_error>

namespace quorl {

class QtEventQueue::Timer : public QueueTimer {
 public:
  explicit Timer(Task onTick) : onTick_(std::make_shared<Task>(std::move(onTick))) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] {
      // The handler may destroy this timer, and with it the task that is running.
      const std::shared_ptr<Task> task = onTick_;
      (*task)();
    });
  }
  void Start(std::chrono::milliseconds period) override {
    timer_.start(std::max(period, std::chrono::milliseconds(1)));
  }
  void Stop() override { timer_.stop(); }

 private:
  QTimer timer_;
  std::shared_ptr<Task> onTick_;
};

class QtEventQueue::Watch : public FileWatch {
 public:
  Watch(int file, Task onReadable)
      : notifier_(std::make_unique<QSocketNotifier>(file, QSocketNotifier::Read)) {
    auto task = std::make_shared<Task>(std::move(onReadable));
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [task] {
      // The handler may destroy this watch, and with it the task that is running: a copy lives as long as
      // that.
      (*std::shared_ptr<Task>(task))();
    });
  }
  ~Watch() override {
    // Qt goes on using a notifier whose handler is running until that handler returns.
    notifier_->setEnabled(false);
    notifier_.release()->deleteLater();
  }

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};

class QtEventQueue::Signal : public QueueSignal {
 public:
  explicit Signal(Task onRaise) : file_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (file_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
    watch_.emplace(file_, [file = file_, handler = std::move(onRaise)] {
      std::uint64_t raises = 0;
      // Emptied before the handler looks, so that a raise from then on is a call of its own.
      if (read(file, &raises, sizeof raises) == sizeof raises) handler();
    });
  }
  ~Signal() override {
    watch_.reset();
    close(file_);
  }
  void Raise() override {
    const int error = errno;
    const std::uint64_t one = 1;
    // It can only fail with the counter full, and then the queue wakes anyway.
    [[maybe_unused]] const ssize_t written = write(file_, &one, sizeof one);
    errno = error;
  }

 private:
  int file_;
  std::optional<Watch> watch_;
};

QtEventQueue::QtEventQueue() {
  wake_.setSingleShot(true);
  wake_.callOnTimeout([this] { Deliver(); });
}

QtEventQueue::~QtEventQueue() = default;

void QtEventQueue::Post(Task task) {
  line_.push_back({++lastNumber_, std::move(task)});
  if (!wake_.isActive()) wake_.start(0);
}

void QtEventQueue::Deliver() {
  const std::uint64_t last = lastNumber_;
  while (!line_.empty() && line_.front().Number <= last) {
    const Task run = std::move(line_.front().Run);
    line_.pop_front();
    run();
  }
  if (!line_.empty() && !wake_.isActive()) wake_.start(0);
}

void QtEventQueue::Yield() {
  Deliver();
  QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtEventQueue::Wait(std::chrono::milliseconds atMost) {
  if (!line_.empty() || atMost <= std::chrono::milliseconds(0)) {
    Yield();
    return;
  }
  QTimer limit;
  limit.setSingleShot(true);
  limit.setTimerType(Qt::PreciseTimer);
  limit.start(atMost);
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  Yield();
}

std::unique_ptr<QueueTimer> QtEventQueue::CreateTimer(Task onTick) {
  return std::make_unique<Timer>(std::move(onTick));
}

std::unique_ptr<QueueSignal> QtEventQueue::CreateSignal(Task onRaise) {
  return std::make_unique<Signal>(std::move(onRaise));
}

std::unique_ptr<FileWatch> QtEventQueue::WatchFile(int file, Task onReadable) {
  return std::make_unique<Watch>(file, std::move(onReadable));
}

}  // namespace quorl
