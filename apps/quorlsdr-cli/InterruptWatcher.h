// Takes care that an interrupted program leaves no partial file behind.
#pragma once

#include <atomic>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>

namespace quorl::cli {

// From its construction an interrupt, hang-up or termination signal waits; from Start on it removes the
// temporary file, says so and ends the program with exit code 1, whatever the main thread waits for.
class InterruptWatcher {
 public:
  InterruptWatcher();
  ~InterruptWatcher();
  InterruptWatcher(const InterruptWatcher&) = delete;
  InterruptWatcher& operator=(const InterruptWatcher&) = delete;

  // `temporary` may be empty; `name` is what the message names. Once.
  void Start(std::filesystem::path temporary, std::string name);

 private:
  void Watch() const;

  std::filesystem::path temporary_;
  std::string name_;
  sigset_t signals_;
  sigset_t before_;
  std::atomic<bool> done_ = false;
  std::thread thread_;
};

}  // namespace quorl::cli
