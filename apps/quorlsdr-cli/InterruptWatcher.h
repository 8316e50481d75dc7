// Takes care that an interrupted program leaves no partial file behind.
#pragma once

#include <atomic>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "platform/Files.h"

namespace quorl::cli {

// From its construction an interrupt, hang-up or termination signal waits; from Start on it removes the
// temporary files, says so and ends the program with exit code 1, whatever the main thread waits for.
class InterruptWatcher {
 public:
  // `files` outlives the watcher.
  explicit InterruptWatcher(Files& files);
  ~InterruptWatcher();
  InterruptWatcher(const InterruptWatcher&) = delete;
  InterruptWatcher& operator=(const InterruptWatcher&) = delete;

  // Empty names of `temporaries` are passed over; `name` is what the message names. Once.
  void Start(std::vector<std::string> temporaries, std::string name);
  // Instead of Start, for who cleans up on its own between two steps: whether a signal has come, which is
  // taken.
  bool TakePending() const;

 private:
  void Watch() const;

  Files& files_;
  std::vector<std::string> temporaries_;
  std::string name_;
  sigset_t signals_;
  sigset_t before_;
  std::atomic<bool> done_ = false;
  std::thread thread_;
};

}  // namespace quorl::cli
