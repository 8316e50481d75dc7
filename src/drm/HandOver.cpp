#include "drm/HandOver.h"

#include <utility>

#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr int kInterval = 20;  // ms; before anything of a new mode has left the sound card's buffers

}  // namespace

HandOver::HandOver(EventQueue& queue, modDream& dream, HandOverLinks links)
    : tmrHandOver(queue, [this] { tmrHandOver_Timer(); }), dream_(dream), links_(std::move(links)) {
  tmrHandOver.SetInterval(kInterval);
}

void HandOver::AddSettings(SettingsTable& table) {
  table.Add("DRM.CloseSoundcardOnDRM", CloseSoundcardOnDRM);
  table.Add("DRM.PlaybackDevice", PlaybackDevice);
}

void HandOver::ModeChanged() {
  if (stopped_) return;
  if (dream_.DreamCloseOnModeChange) dream_.CloseDream();
  starts_ = links_.InDRM();
  if (starts_ || entered_) tmrHandOver.SetEnabled(true);
}

bool HandOver::KeepsSound() {
  if (links_.InDRM()) released_ = CloseSoundcardOnDRM;
  links_.Changed();
  return released_;
}

void HandOver::Stop() {
  stopped_ = true;
  tmrHandOver.SetEnabled(false);
}

void HandOver::tmrHandOver_Timer() {
  if (inTimer_ || links_.IsBusy()) return;
  const ScopedFlag ticking(inTimer_);
  if (links_.InDRM() && !entered_) Enter();
  if (!dream_.IsClosing()) {
    if (!links_.InDRM() && entered_) Leave();
    if (links_.InDRM() && std::exchange(starts_, false)) dream_.RunDREAM();
  }
  // The mode may have changed meanwhile.
  const bool done = links_.InDRM() ? entered_ && !starts_ : !entered_;
  tmrHandOver.SetEnabled(!done && !stopped_);
}

void HandOver::Enter() {
  entered_ = true;
  released_ = CloseSoundcardOnDRM;
  playsOn_ = PlaybackDevice;
  if (released_) {
    links_.ReleaseSound();
  } else if (!playsOn_.empty()) {
    links_.OpenSound();
  }
  links_.Changed();
}

// What was let go of is taken back, whatever the options say by now.
void HandOver::Leave() {
  entered_ = false;
  const bool opens = std::exchange(released_, false) || !playsOn_.empty();
  if (opens) links_.OpenSound();
  links_.Changed();
}

}  // namespace quorl
