#include "tuning/Tuner.h"

#include <algorithm>
#include <utility>

#include "support/Rounding.h"
#include "support/ScopedFlag.h"

namespace quorl {

Tuner::Tuner(std::shared_ptr<clsVFO> vfo) : vfo_(std::move(vfo)) {
  vfo_->IsSuperseded = [this] { return wish_.has_value(); };
}

Tuner::~Tuner() {
  vfo_->IsSuperseded = [] { return false; };
}

std::int32_t Tuner::Highest() const {
  const std::int64_t reach = vfo_->Reach(), noted = vfo_->HighestNoted();
  return static_cast<std::int32_t>(std::max<std::int64_t>(reach < 0 ? noted : std::min(reach, noted), 0));
}

std::int32_t Tuner::StepBy(double dHz) {
  return dHz == 0 ? Wanted() : Ask(vfo_->GridPoint(Wanted()) + dHz, true);
}

std::int32_t Tuner::MoveTo(std::int32_t dHz) {
  return Ask(dHz, false);
}

void Tuner::SetHiSideLO(bool high) {
  if (played_) return;
  vfo_->HiSideLO = high;
  MoveTo(Wanted());
}

std::int32_t Tuner::Ask(double dHz, bool isStep) {
  if (played_) {
    OnRefused();
    return *played_;
  }
  const double highest = Highest();
  wish_ = Wish{RoundHalfEven(std::clamp(dHz, 0.0, highest)), isStep};
  OnWanted();
  if (dHz > highest) OnStop();
  Settle();
  return Wanted();
}

void Tuner::Play(std::int32_t dHz) {
  if (played_ == dHz) return;
  played_ = dHz;
  OnWanted();
}

void Tuner::EndPlay() {
  if (!played_) return;
  played_.reset();
  OnWanted();
  Settle();
}

void Tuner::CarryOut(const Wish& wish) {
  const double by = wish.Frequency - vfo_->GridPoint(vfo_->TunedFrequency());
  if (wish.IsStep && by != 0) {
    vfo_->Inc_Freq(by);
  } else {
    static_cast<void>(vfo_->SetTunedFrequency(wish.Frequency));
  }
}

bool Tuner::IsChipAstray() const {
  const auto chip = vfo_->OscType;
  return chip && chip->CanSend() &&
         chip->WordSent() != chip->WordFor(vfo_->OscillatorFor(vfo_->TunedFrequency()));
}

void Tuner::Settle() {
  if (working_) return;
  const ScopedFlag working(working_);
  bool tried = false;
  while (!played_ && (wish_ || chipLost_ || (!tried && IsChipAstray()))) {
    tried = !wish_ && !chipLost_;
    if (std::exchange(chipLost_, false)) {
      if (vfo_->OscType) vfo_->OscType->Initialise();
    } else if (wish_) {
      CarryOut(*std::exchange(wish_, std::nullopt));
    } else {
      vfo_->Refresh();
    }
  }
}

void Tuner::Revive() {
  chipLost_ = true;
  Settle();
}

void Tuner::Refresh() {
  if (working_ || played_) return;
  {
    const ScopedFlag working(working_);
    vfo_->Refresh();
  }
  Settle();
}

void Tuner::Resend() {
  if (working_ || played_ || !vfo_->OscType) return;
  {
    const ScopedFlag working(working_);
    vfo_->OscType->Refresh();
  }
  Settle();
}

}  // namespace quorl
