#include "desktop/views/RefreshClock.h"

#include <algorithm>

#include "desktop/views/View.h"

namespace quorl {

RefreshClock::RefreshClock() {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  timer_.callOnTimeout([this] { Flush(); });
  sinceFlush_.start();
}

void RefreshClock::MarkDirty(View& view) {
  if (view.dirty_) return;
  view.dirty_ = true;
  dirty_.push_back(&view);
  Schedule();
}

void RefreshClock::Forget(View& view) {
  std::erase(dirty_, &view);
}

void RefreshClock::SetAwake(bool awake) {
  awake_ = awake;
  if (!awake) timer_.stop();
  Schedule();
}

void RefreshClock::Schedule() {
  if (!awake_ || dirty_.empty() || timer_.isActive()) return;
  timer_.start(static_cast<int>(std::max<qint64>(0, kMilliseconds - sinceFlush_.elapsed())));
}

void RefreshClock::Flush() {
  timer_.stop();
  sinceFlush_.restart();
  // A view that takes over may mark others.
  std::vector<View*> due;
  due.swap(dirty_);
  for (View* view : due) view->dirty_ = false;
  for (View* view : due) {
    ++takenOver_;
    view->TakeOver();
  }
  if (AfterFlush) AfterFlush();
}

}  // namespace quorl
