// Calls that hang for as long as a sound server hangs, on a thread of their own.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace quorl {

// Errands run one after the other in the order in which they were given. What they use they hold themselves:
// where the server never comes back, an errand outlives whoever gave it.
class SoundErrands {
 public:
  // How long a person may be kept waiting for a server, and the program's end for the last errands.
  static constexpr std::chrono::milliseconds kPatience{1000};

  SoundErrands();
  // Waits for the errands that are left, no longer than the patience.
  ~SoundErrands();
  SoundErrands(const SoundErrands&) = delete;
  SoundErrands& operator=(const SoundErrands&) = delete;

  // Waits for the errand's end. False where it has not come in time: the errand is left out if it has not
  // begun, and as long as the line hangs further ones are not waited for at all.
  bool Run(std::function<void()> errand);
  // Doesn't wait.
  void Post(std::function<void()> errand);
  // An errand has been waited for in vain and is still at it.
  bool IsHanging() const;

 private:
  struct Line;
  std::shared_ptr<Line> line_;
};

}  // namespace quorl
