// The rate that is tuned by: chosen by digit or from the list of steps, free or locked.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "support/NumberPicture.h"
#include "tuning/TuneStepTexts.h"
#include "tuning/TuningPanel.h"

namespace quorl {

namespace {

// Places in mnuVFOControlSub.
enum VFOControlItem : std::int32_t { kSetTuningRate = 2, kLockTuneRate = 3, kUnlockTuneRate = 4 };

constexpr const char* kClickToLock = "Click to Lock Tuning Rate";
constexpr char kStepGestures[] = "Left Click to Lock Tune Rate, Right Click to Set Tune Step";
constexpr const char* kClickToUnlock = "Click to Unlock Tuning Rate";

// The digit that goes with a range of the step table, up to and including `LastIndex`.
struct StepRange {
  std::int32_t LastIndex, Digit;
};
constexpr std::array<StepRange, 5> kStepRanges{{{4, 4}, {7, 5}, {10, 6}, {13, 7}, {16, 8}}};

double Weight(std::int32_t digit) {
  return std::pow(10.0, TuningPanel::kDigits - 1 - digit);
}

// A step in the unit that goes with its digit.
std::string RateText(double step, std::int32_t digit) {
  const auto text = [](double value) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.6g", value);
    return std::string(digits);
  };
  if (digit <= 1) return FormatPicture(step / 10000000.0, "0") + " MHz";
  if (digit <= 4) return text(step / 10000.0) + " KHz";
  if (digit <= 7) return text(step / 10.0) + " Hz";
  return text(step) + " dHz";
}

}  // namespace

void TuningPanel::ConnectRate() {
  ShowLock();
  imgTuneStepLock.ToolTip = "Click to Unlock Tune Rate";
  for (auto* gesture : {&imgTuneStepLock.Click, &imgTuneStepLock.DblClick}) {
    *gesture = [this] { imgTuneStepLock_DblClick(); };
  }
  lblTuningRate.ToolTip = kStepGestures;
  lblTuningRate.Click = [this] { lblTuningRate_Click(); };
  // The second press of a double click is no click.
  for (Label* label : {&lblTuningRate, &lblTuneDialRate}) label->DblClick = [] {};
  lblTuneDialRate.ToolTip = "Right Click to Set Tune Step";
  cboTuningSteps.Visible = false;
  cboTuningSteps.ToolTip = kStepGestures;
  cboTuningSteps.Click = [this] { cboTuningSteps_Click(); };
  cboTuningSteps.LostFocus = [this] { cboTuningSteps.Visible = false; };
  cboTuningSteps.KeyDown = [this](Key key) {
    if (key.Code == Key::Escape) cboTuningSteps.Visible = false;
  };
  for (Label* label : {&lblTuningRate, &lblTuneDialRate}) {
    label->MouseDown = [this, label](const MouseEvent& at) {
      if (at.Button != MouseButton::Right) return;
      ShowStepSelector(*label);
    };
  }
  mnuVFOControlSub.Click = [this](int index) { mnuVFOControlSub_Click(index); };
  mnuVFOStepSub.Click = [this](int index) { SetTuningRate(index, false); };
}

std::int32_t TuningPanel::DigitOfRate() const {
  return std::clamp(kDigits - 1 - static_cast<std::int32_t>(std::log10(TuneRate)), 0, kDigits - 1);
}

void TuningPanel::FillTuningSteps() {
  const auto texts = TuneStepTexts();
  cboTuningSteps.SetItems({texts.begin(), texts.end()});
}

void TuningPanel::HighlightDigit(std::int32_t digit) {
  lbl7Seg(lastDigit_).ForeColour = colours_.Digit;
  lbl7Seg(digit).ForeColour = colours_.ChosenDigit;
  lastDigit_ = digit;
  picFreqDisp.ChosenDigit = digit;
}

void TuningPanel::lbl7Seg_MouseMove(std::int32_t index) {
  links_.ActivateDisplay();
  if (vfo_ == nullptr || index == lastDigit_ || vfo_->TuneStepLock || TuningRateLocked) return;
  TuneRate = static_cast<float>(Weight(index));
  TuneDigit = index;
  SetTuneDigit(index, 1.0F);
}

void TuningPanel::SetTuneDigit(std::int32_t digit, float multiplier) {
  if (vfo_ != nullptr) vfo_->SetTuneStep(Weight(digit) * multiplier);
  ShowRate(digit);
  HighlightDigit(digit);
}

void TuningPanel::TakeStep(double dHz) {
  if (vfo_ == nullptr || vfo_->TuneStepLock || TuningRateLocked) return;
  vfo_->SetTuneStep(dHz);
  TuneRate = static_cast<float>(vfo_->TuneStep());
  TuneDigit = DigitOfRate();
  ShowRate(TuneDigit);
  HighlightDigit(TuneDigit);
}

void TuningPanel::ShowRate(std::int32_t digit) {
  if (vfo_ == nullptr) return;
  lblTuningRate.Caption = RateText(vfo_->TuneStep(), digit);
  ShowDial();
}

// While a step is held, the wheel tunes by it over any digit.
void TuningPanel::ShowLock() {
  const bool stepHeld = vfo_ != nullptr && vfo_->TuneStepLock;
  imgTuneStepLock.Visible = stepHeld;
  for (std::int32_t i = 0; i < kDigits; ++i) {
    lbl7Seg(i).ToolTip =
        stepHeld || TuningRateLocked
            ? "Wheel tunes by " + lblTuningRate.Caption() + ", the locked step, Right Click for more"
            : "Wheel tunes by " + RateText(Weight(i), i) + ", Click to Lock Tune Rate, Right Click for more";
  }
}

// The dial tunes while the rate is locked; while it is free, the dial looks as if held.
void TuningPanel::ShowDial() {
  ShowLock();
  dialtuner.Faded = !TuningRateLocked;
  dialtuner.AccessibleName = std::string(TuningRateLocked ? "Tuning dial" : "Tuning dial, held");
  dialtuner.ToolTip = TuningRateLocked
                          ? "Tunes by " + lblTuningRate.Caption()
                          : "Held: only brings the frequency onto the grid of the step. Click on "
                            "Step to lock the rate, and the dial tunes by it";
}

void TuningPanel::LockDigit(std::int32_t digit) {
  vfo_->TuneStepLock = false;
  SetTuneDigit(digit, 1.0F);
  TuneDigit = lockedDigit_ = digit;
  TuneRate = static_cast<float>(vfo_->TuneStep());
}

void TuningPanel::lbl7Seg_DblClick(std::int32_t index) {
  if (vfo_ == nullptr) return;
  if (!vfo_->TuneStepLock) {
    lockedDigit_ = lastDigit_;
  } else if (index != lockedDigit_) {
    LockDigit(index);
  }
  vfo_->TuneStepLock = true;
  SetRateLocked(true);
}

void TuningPanel::imgTuneStepLock_DblClick() {
  if (vfo_ != nullptr) vfo_->TuneStepLock = false;
  SetRateLocked(false);
}

void TuningPanel::lblTuningRate_Click() {
  SetRateLocked(!TuningRateLocked);
}

void TuningPanel::SetRateLocked(bool locked) {
  TuningRateLocked = locked;
  lblTuningRate.ForeColour = TuningRateLocked ? colours_.LockedRate : colours_.ChosenDigit;
  lblTuningRate.ToolTip = std::string(TuningRateLocked ? kClickToUnlock : kClickToLock);
  ShowDial();
}

void TuningPanel::mnuVFOControlSub_Click(std::int32_t index) {
  if (vfo_ == nullptr) return;
  if (index == kSetTuningRate) {
    ShowStepSelector(lbl7Seg(menuDigit_));
  } else if (index == kLockTuneRate) {
    LockDigit(menuDigit_);
    vfo_->TuneStepLock = true;
    SetRateLocked(true);
  } else if (index == kUnlockTuneRate) {
    SetRateLocked(false);
    vfo_->TuneStepLock = false;
  }
  ShowLock();
}

// Nothing is chosen when it opens, so that the step of last time can be chosen again; the one in force is
// marked.
void TuningPanel::ShowStepSelector(const Control& beside) {
  cboTuningSteps.Beside = &beside;
  cboTuningSteps.SetListIndex(-1);
  const auto step =
      vfo_ != nullptr ? std::find(TuneSteps.begin(), TuneSteps.end(), vfo_->TuneStep()) : TuneSteps.end();
  cboTuningSteps.Marked = step == TuneSteps.end() ? -1 : static_cast<int>(step - TuneSteps.begin());
  cboTuningSteps.Visible = true;
}

void TuningPanel::cboTuningSteps_Click() {
  const std::int32_t index = cboTuningSteps.ListIndex();
  if (index < 0) return;
  links_.StoreTuneStep(TuneSteps[static_cast<std::size_t>(index)]);
  SetTuningRate(index, true);
}

void TuningPanel::SetTuningRate(std::int32_t index, bool override) {
  if (vfo_ == nullptr) return;
  if (override) vfo_->TuneStepLock = false;
  if (vfo_->TuneStepLock) return;
  constexpr auto kLast = static_cast<std::int32_t>(TuneSteps.size()) - 1;
  TuneStepIndex = index > kLast ? 0 : index < 0 ? kLast : index;
  const double step = TuneSteps[static_cast<std::size_t>(TuneStepIndex)];
  vfo_->SetTuneStepLSD(step);
  for (const StepRange& range : kStepRanges) {
    if (TuneStepIndex > range.LastIndex) continue;
    SetTuneDigit(range.Digit, static_cast<float>(step / Weight(range.Digit)));
    TuneDigit = lockedDigit_ = range.Digit;
    break;
  }
  TuneRate = static_cast<float>(vfo_->TuneStep());
  vfo_->TuneStepLock = true;
  ShowLock();
}

}  // namespace quorl
