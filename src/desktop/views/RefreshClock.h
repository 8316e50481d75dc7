// When the views of a window look at their controls again.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <vector>

namespace quorl {

class View;

// However often a control changes, its view takes it over at most 25 times a second, one that answers the
// hand a hundred times, one that is read six times (figures that change faster blur), and not at all while
// nobody can see the window.
class RefreshClock {
 public:
  static constexpr int kMilliseconds = 40, kPromptMilliseconds = 10, kReadMilliseconds = 160;

  RefreshClock();

  void MarkDirty(View& view);
  void Forget(View& view);
  // The window tells whether it is on a screen. What changed meanwhile is taken over when it comes back.
  void SetAwake(bool awake);
  bool IsAwake() const { return awake_; }
  // Takes over what is due, at once, seen or not.
  void Flush();
  // Runs after each flush.
  std::function<void()> AfterFlush;
  // How often a view has taken over something, for those who watch the load.
  long TakenOver() const { return takenOver_; }

 private:
  void Schedule();
  void Tick();
  void FlushPrompt();
  void TakeOver(const std::vector<View*>& due);

  QTimer timer_, promptTimer_;
  QElapsedTimer sinceFlush_, sincePrompt_, sinceRead_;
  std::vector<View*> dirty_;
  bool awake_ = false;
  long takenOver_ = 0;
};

}  // namespace quorl
