#include "InterruptWatcher.h"

#include <pthread.h>
#include <unistd.h>

#include "Commands.h"
#include "Fault.h"

namespace quorl::cli {

InterruptWatcher::InterruptWatcher(Files& files) : files_(files) {
  sigemptyset(&signals_);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals_, signal);
  pthread_sigmask(SIG_BLOCK, &signals_, &before_);
}

InterruptWatcher::~InterruptWatcher() {
  if (thread_.joinable()) {
    done_ = true;
    pthread_kill(thread_.native_handle(), SIGINT);
    thread_.join();
  }
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void InterruptWatcher::Start(std::vector<std::string> temporaries, std::string name) {
  temporaries_ = std::move(temporaries);
  name_ = std::move(name);
  thread_ = std::thread([this] { Watch(); });
}

bool InterruptWatcher::TakePending() const {
  const timespec atOnce{};
  return sigtimedwait(&signals_, nullptr, &atOnce) > 0;
}

void InterruptWatcher::Watch() const {
  int signal = 0;
  sigwait(&signals_, &signal);
  if (done_) return;
  for (const std::string& temporary : temporaries_) {
    if (!temporary.empty()) files_.Remove(temporary);
  }
  PrintFault(name_ + ": interrupted; run again for a complete output");
  _exit(ExitCode::Failed);
}

}  // namespace quorl::cli
