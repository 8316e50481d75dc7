#include "TerminationSignals.h"

#include <atomic>
#include <csignal>

namespace quorl {

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// A signal handler is handed nothing but its number.
std::atomic<QueueSignal*> wake = nullptr;

void OnSignal(int) {
  if (QueueSignal* signal = wake) signal->Raise();
}

}  // namespace

TerminationSignals::TerminationSignals(EventQueue& queue, std::function<void()> onEnd)
    : raised_(queue.CreateSignal(std::move(onEnd))) {
  wake = raised_.get();
  struct sigaction action {};
  action.sa_handler = OnSignal;
  action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : kSignals) sigaction(signal, &action, nullptr);
}

TerminationSignals::~TerminationSignals() {
  for (const int signal : kSignals) std::signal(signal, SIG_DFL);
  wake = nullptr;
}

}  // namespace quorl
