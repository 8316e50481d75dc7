#include "Progress.h"

#include <unistd.h>

#include <cstdio>

#include "state/PublicConstants.h"

namespace quorl::cli {

constexpr std::chrono::milliseconds FirstShow(500);
constexpr std::chrono::milliseconds ShowInterval(200);

Progress::Progress(std::optional<std::int64_t> frames)
    : terminal_(isatty(STDERR_FILENO) == 1), frames_(frames), next_(begin_ + FirstShow) {}

Progress::~Progress() {
  if (shown_) std::fputs("\r\x1B[K", stderr);
}

void Progress::Update(std::int64_t framesDone) {
  if (!terminal_) return;
  const Clock::time_point now = Clock::now();
  if (now < next_) return;
  next_ = now + ShowInterval;
  shown_ = true;
  const double seconds = static_cast<double>(framesDone) / FSampling;
  const double speed = seconds / std::chrono::duration<double>(now - begin_).count();
  if (frames_ && *frames_ > 0) {
    std::fprintf(stderr, "\r%3d %%  %.0f of %.0f s  %.0f times real time\x1B[K",
                 static_cast<int>(100 * framesDone / *frames_), seconds,
                 static_cast<double>(*frames_) / FSampling, speed);
  } else {
    std::fprintf(stderr, "\r%.0f s  %.0f times real time\x1B[K", seconds, speed);
  }
}

}  // namespace quorl::cli
