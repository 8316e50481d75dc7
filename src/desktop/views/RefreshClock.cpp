#include "desktop/views/RefreshClock.h"

#include <algorithm>
#include <iterator>

#include "desktop/views/View.h"

namespace quorl {

RefreshClock::RefreshClock() {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  timer_.callOnTimeout([this] { Tick(); });
  sinceFlush_.start();
  sinceRead_.start();
  promptTimer_.setSingleShot(true);
  promptTimer_.setTimerType(Qt::PreciseTimer);
  promptTimer_.callOnTimeout([this] { FlushPrompt(); });
  sincePrompt_.start();
}

void RefreshClock::MarkDirty(View& view) {
  if (!view.dirty_) {
    view.dirty_ = true;
    dirty_.push_back(&view);
  }
  Schedule();
}

void RefreshClock::Forget(View& view) {
  std::erase(dirty_, &view);
}

void RefreshClock::SetAwake(bool awake) {
  awake_ = awake;
  if (!awake) {
    timer_.stop();
    promptTimer_.stop();
  }
  Schedule();
}

void RefreshClock::Schedule() {
  if (!awake_ || dirty_.empty()) return;
  const auto start = [](QTimer& timer, qint64 milliseconds) {
    if (!timer.isActive()) timer.start(static_cast<int>(std::max<qint64>(0, milliseconds)));
  };
  const bool onlyRead =
      std::all_of(dirty_.begin(), dirty_.end(), [](const View* view) { return view->IsRead(); });
  // Never late for a view that moves, because one that is read is marked already.
  if (!onlyRead && timer_.remainingTime() > kMilliseconds) timer_.stop();
  start(timer_, onlyRead ? kReadMilliseconds - sinceRead_.elapsed() : kMilliseconds - sinceFlush_.elapsed());
  if (std::any_of(dirty_.begin(), dirty_.end(), [](const View* view) { return view->IsPrompt(); }))
    start(promptTimer_, kPromptMilliseconds - sincePrompt_.elapsed());
}

void RefreshClock::FlushPrompt() {
  sincePrompt_.restart();
  std::vector<View*> due;
  std::copy_if(dirty_.begin(), dirty_.end(), std::back_inserter(due),
               [](const View* view) { return view->IsPrompt(); });
  std::erase_if(dirty_, [](const View* view) { return view->IsPrompt(); });
  TakeOver(due);
}

void RefreshClock::Tick() {
  if (sinceRead_.elapsed() >= kReadMilliseconds) {
    Flush();
    return;
  }
  sinceFlush_.restart();
  std::vector<View*> due;
  std::copy_if(dirty_.begin(), dirty_.end(), std::back_inserter(due),
               [](const View* view) { return !view->IsRead(); });
  std::erase_if(dirty_, [](const View* view) { return !view->IsRead(); });
  TakeOver(due);
  if (AfterFlush) AfterFlush();
  Schedule();
}

void RefreshClock::Flush() {
  timer_.stop();
  promptTimer_.stop();
  sinceFlush_.restart();
  sinceRead_.restart();
  // A view that takes over may mark others.
  std::vector<View*> due;
  due.swap(dirty_);
  TakeOver(due);
  if (AfterFlush) AfterFlush();
}

void RefreshClock::TakeOver(const std::vector<View*>& due) {
  for (View* view : due) view->dirty_ = false;
  for (View* view : due) {
    ++takenOver_;
    view->TakeOver();
  }
}

}  // namespace quorl
