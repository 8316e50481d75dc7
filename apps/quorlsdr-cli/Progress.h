// A line on the terminal that tells how far a long reception is.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace quorl::cli {

// Shows nothing where standard error is no terminal, and nothing in the first half second.
class Progress {
 public:
  // `frames` in all, where that is known.
  explicit Progress(std::optional<std::int64_t> frames);
  ~Progress();  // takes the line away
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Update(std::int64_t framesDone);

 private:
  using Clock = std::chrono::steady_clock;

  bool terminal_;
  bool shown_ = false;
  std::optional<std::int64_t> frames_;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point next_;
};

}  // namespace quorl::cli
