#include "tuning/TuningPanel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "state/PublicConstants.h"
#include "support/NumberPicture.h"
#include "support/Rounding.h"
#include "tuning/FrequencyText.h"
#include "tuning/TuneStepTexts.h"

namespace quorl {

namespace {

constexpr std::array<const char*, 5> kVFOControlItems{"Cancel", "-", "Set Tuning Rate", "Lock Tune Rate",
                                                      "Unlock Tune rate"};

// Less than any grid: an unlocked dial brings the frequency onto the grid and no further.
constexpr double kUnlockedDialStep = 0.0001;

// A held key repeats sooner than that; whoever presses it later has let it go, though nobody told.
constexpr std::int64_t kLongestRepeat = 1500000;  // microseconds

std::array<const char*, TuneSteps.size()> Pointers(const std::array<std::string, TuneSteps.size()>& texts) {
  std::array<const char*, TuneSteps.size()> pointers;
  for (std::size_t i = 0; i < texts.size(); ++i) pointers[i] = texts[i].c_str();
  return pointers;
}

}  // namespace

TuningPanel::TuningPanel(ControlRegistry& registry, EventQueue& queue, const Clock& clock,
                         const PublicVars& vars, TuningPanelLinks links)
    : frFreqCtl(registry, "frFreqCtl"),
      lbl7Seg(registry, "lbl7Seg", kDigits),
      lbl7SegTop(registry, "lbl7SegTop"),
      lblTuningLimit(registry, "lblTuningLimit"),
      picFreqDisp(registry, "picFreqDisp"),
      dialtuner(registry, "dialtuner"),
      cboTuningSteps(registry, "cboTuningSteps"),
      lblTuningRate(registry, "lblTuningRate"),
      lblTuneDialRate(registry, "lblTuneDialRate"),
      lblClock(registry, "lblClock"),
      imgTuneStepLock(registry, "imgTuneStepLock"),
      mnuVFOControlSub(registry, "mnuVFOControlSub", kVFOControlItems),
      mnuVFOStepSub(registry, "mnuVFOStepSub", Pointers(TuneStepTexts())),
      chkTuneLo(registry, "chkTuneLo"),
      tmrTune(queue, [this] { tmrTune_Timer(); }),
      tmrShaft(queue, [this] { tmrShaft_Timer(); }),
      tmrVFOUpdate(queue, [this] { tmrVFOUpdate_Timer(); }),
      tmrClock(queue, [this] { tmrClock_Timer(); }),
      clock_(clock),
      vars_(vars),
      links_(std::move(links)),
      shaftProfiler_(clock) {
  lbl7SegTop.Visible = lblTuningLimit.Visible = false;
  chkTuneLo.Caption = "Low Side LO";
  chkTuneLo.ToolTip = "Lo Side LO Injection (Elektor DRM)";
  chkTuneLo.Click = [this] { chkTuneLo_Click(); };
  dialtuner.Change = [this] { dialtuner_Change(); };
  picFreqDisp.KeyDown = [this](Key key) {
    links_.ReviveDisplay();
    if (!links_.TypeFrequency(key)) picFreqDisp_KeyDown(key);
  };
  picFreqDisp.Tune = [this](double hertz) {
    const double dHz = std::clamp(hertz * 10.0, 0.0, 2147483647.0);
    if (tuner_ != nullptr) tuner_->MoveTo(static_cast<std::int32_t>(std::lround(dHz)));
  };
  picFreqDisp.KeyUp = [this](Key) { picFreqDisp_KeyUp(); };
  picFreqDisp.MouseMove = [this] { links_.ActivateDisplay(); };
  picFreqDisp.MouseUp = [this](const MouseEvent& at) {
    if (at.Button == MouseButton::Left) TuneUpHeld = false;
    if (at.Button == MouseButton::Right) TuneDownHeld = false;
  };
  ConnectDigits();
  ConnectRate();
}

void TuningPanel::ConnectDigits() {
  for (std::int32_t i = 0; i < kDigits; ++i) {
    Label& digit = lbl7Seg(i);
    digit.MouseMove = [this, i] { lbl7Seg_MouseMove(i); };
    digit.Click = [this, i] { lbl7Seg_DblClick(i); };
    digit.DblClick = [this, i] { lbl7Seg_DblClick(i); };
    digit.MouseDown = [this, i](const MouseEvent& at) {
      if (at.Button != MouseButton::Right) return;
      menuDigit_ = i;
      mnuVFOControlSub.PopUp();
    };
    digit.Wheel = [this, i](int notches, const MouseEvent&) {
      lbl7Seg_MouseMove(i);
      Step(notches * double{TuneRate});
    };
  }
}

void TuningPanel::SetTuner(Tuner* tuner) {
  if (tuner_ != nullptr) tuner_->OnWanted = tuner_->OnStop = tuner_->OnRefused = [] {};
  tuner_ = tuner;
  vfo_ = tuner != nullptr ? &tuner->VFO() : nullptr;
  if (vfo_ == nullptr) return;
  tuner_->OnWanted = [this] { ShowWanted(); };
  tuner_->OnStop = [this] { ShowLimit(TuningLimitText(tuner_->Highest())); };
  tuner_->OnRefused = [this] { ShowLimit("A recording plays: only the BFO tunes"); };
  TuneRate = static_cast<float>(vfo_->TuneStep());
  if (TuneRate >= 1.0F) TuneDigit = DigitOfRate();
  ShowRate(TuneDigit);
  HighlightDigit(TuneDigit);
}

void TuningPanel::SetEncoder(clsDDSSerialIF* serial) {
  encoder_ = serial;
  if (encoder_ != nullptr) encoder_->OnComm = [this] { DecodeShaft(); };
}

void TuningPanel::SetColours(const TuningColours& colours) {
  colours_ = colours;
  for (std::int32_t i = 0; i < kDigits; ++i) lbl7Seg(i).ForeColour = colours.Digit;
  HighlightDigit(lastDigit_);
  lbl7SegTop.ForeColour = colours.Digit;
  lblTuningLimit.ForeColour = colours.Tuning;
  lblTuningRate.ForeColour = TuningRateLocked ? colours_.LockedRate : colours_.ChosenDigit;
  chkTuneLo.ForeColour = chkTuneLo.Value() ? colours_.Tuning : colours_.Label;
}

void TuningPanel::Display7Seg(const std::string& text) {
  if (text == displayed_) return;
  displayed_ = text;
  const std::size_t surplus = text.size() > kDigits ? text.size() - kDigits : 0;
  lbl7SegTop.Caption = text.substr(0, surplus);
  lbl7SegTop.Visible = surplus > 0;
  for (std::int32_t i = 0; i < kDigits; ++i) {
    const std::size_t at = surplus + static_cast<std::size_t>(i);
    lbl7Seg(i).Caption = at < text.size() ? text.substr(at, 1) : std::string();
  }
  if (tuner_ == nullptr) return;
  links_.ShowOscillator(FormatPicture(tuner_->WantedOscillator() / 10.0, "#0 000 000 Hz"));
}

void TuningPanel::DisplayFrequency() {
  if (vfo_ == nullptr) return;
  const double dHz = static_cast<double>(tuner_->Wanted()) + vars_.BFOOffset * 10.0;
  Display7Seg(FormatPicture(dHz < 0.0 ? 0.0 : dHz, "000000000"));
}

void TuningPanel::Step(double dHz) {
  if (tuner_ != nullptr) tuner_->StepBy(dHz);
}

void TuningPanel::StepAndTurn(int direction, double dHz) {
  TurnDial(direction);
  Step(direction * dHz);
}

// At once, not at the next tick: whoever turns the wheel wants to see where he is.
void TuningPanel::ShowWanted() {
  lblTuningLimit.Visible = false;
  DisplayFrequency();
}

void TuningPanel::ShowLimit(const std::string& why) {
  lblTuningLimit.Caption = why;
  lblTuningLimit.Visible = true;
}

// Turns the knob along with a tuning that came from elsewhere: only a hand on it tunes.
void TuningPanel::TurnDial(std::int32_t steps) {
  inDial_ = true;
  dialtuner.SetValue(dialtuner.Value() + steps);
  dialLastValue_ = dialtuner.Value();
  inDial_ = false;
}

void TuningPanel::dialtuner_Change() {
  if (inDial_ || vfo_ == nullptr) return;
  const double step = TuningRateLocked ? vfo_->TuneStep() : kUnlockedDialStep;
  const std::int32_t delta = dialtuner.Value() - dialLastValue_;
  dialLastValue_ = dialtuner.Value();
  if (delta != 0) Step(delta > 0 ? step : -step);
}

void TuningPanel::tmrTune_Timer() {
  // Taken back first: while the frequency is being sent, the next tick may come.
  if (std::exchange(TuneUpHeld, false)) StepAndTurn(1, TuneRate);
  if (std::exchange(TuneDownHeld, false)) StepAndTurn(-1, TuneRate);
  DisplayFrequency();
  links_.ScopePeriodic();
  if (tuner_ != nullptr) links_.TellRecorder(tuner_->Wanted());
  lblTuneDialRate.Caption = lblTuningRate.Caption;
}

void TuningPanel::tmrVFOUpdate_Timer() {
  if (vfo_ == nullptr) return;
  if (vfo_->AutoUpdate && vfo_->OscType != nullptr && !vfo_->OscType->CMDOutActive) tuner_->Resend();
  tuner_->Settle();
  // At odd times, so that its clicks in a weak signal never fall into step with anything.
  random_ = random_ * 1664525U + 1013904223U;
  tmrVFOUpdate.SetInterval(1500 + static_cast<int>(1500.0 * random_ / 4294967296.0));
}

void TuningPanel::tmrClock_Timer() {
  const LocalTime now = clock_.Now();
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", now.Hour % 100, now.Minute % 100, now.Second % 100);
  lblClock.Caption = std::string(text);
}

void TuningPanel::picFreqDisp_KeyDown(Key key) {
  if (vfo_ == nullptr || !links_.DisplayIsActive()) return;
  if (!digitFromRate_) {
    digitFromRate_ = true;
    if (TuneRate >= 1.0F) TuneDigit = DigitOfRate();
  }
  if (TurnsFrequency(key)) {
    PressTuneKey(key.Code, key.Code == Key::A || key.Code == Key::Up ? 1 : -1);
  } else if ((key.Code == Key::Left || key.Code == Key::Right) && !key.With.Alt) {
    TuneDigit = (TuneDigit + (key.Code == Key::Left ? kDigits - 1 : 1)) % kDigits;
    SetTuneDigit(TuneDigit, 1.0F);
  }
  if (vfo_ != nullptr) TuneRate = static_cast<float>(vfo_->TuneStep());
}

bool TuningPanel::TurnsFrequency(const Key& key) {
  const bool letter = key.Code == Key::A || key.Code == Key::Z;
  const bool arrow = key.Code == Key::Up || key.Code == Key::Down;
  return (letter && !key.With.Ctrl && !key.With.Alt) || (arrow && !key.With.Alt);
}

// The first press tunes at once, however short it is; the repeats of a held key wait for the tick.
void TuningPanel::PressTuneKey(std::int32_t code, int direction) {
  const std::int64_t now = clock_.Microseconds();
  const bool repeats = code == heldKey_ && now - lastPress_ < kLongestRepeat;
  heldKey_ = code;
  lastPress_ = now;
  TuneUpHeld = repeats && direction > 0;
  TuneDownHeld = repeats && direction < 0;
  if (!repeats) StepAndTurn(direction, vfo_->TuneStep());
}

bool TuningPanel::TuneByKey(const Key& key) {
  if (tuner_ == nullptr || (key.Code != Key::PageUp && key.Code != Key::PageDown)) return false;
  const int direction = key.Code == Key::PageUp ? 1 : -1;
  const double step = vfo_->TuneStep();
  if (key.With.Ctrl) {
    // Outright, as a step would go back to the grid first.
    tuner_->MoveTo(tuner_->Wanted() + direction * std::max(RoundHalfEven(step / 10.0), 1));
  } else {
    StepAndTurn(direction, key.With.Shift ? 10.0 * step : step);
  }
  return true;
}

void TuningPanel::picFreqDisp_KeyUp() {
  heldKey_ = 0;
  TuneUpHeld = TuneDownHeld = false;
  if (vfo_ != nullptr) TuneRate = static_cast<float>(vfo_->TuneStep());
}

void TuningPanel::chkTuneLo_Click() {
  const bool low = chkTuneLo.Value();
  chkTuneLo.ForeColour = low ? colours_.Tuning : colours_.Label;
  links_.SetLowSideLO(low);
  if (tuner_ != nullptr) tuner_->SetHiSideLO(!low);
}

void TuningPanel::DecodeShaft() {
  if (!ShaftEnabled || encoder_ == nullptr || vfo_ == nullptr) return;
  const int direction = shaftDecoder_.Decode(encoder_->GetEncoderBits());
  if (direction == 0) return;
  if (ShaftAutoRateOn) {
    shaftUpCount_ = direction > 0 ? 1 : 0;
    shaftDownCount_ = direction > 0 ? 0 : 1;
    if (!tmrShaft.Enabled()) tmrShaft.SetEnabled(true);  // a running batch keeps its beat
    ShaftAutoRateStep();
  } else {
    StepAndTurn(direction, vfo_->TuneStep());
  }
}

void TuningPanel::ShaftAutoRateStep() {
  shaftProfiler_.StopTiming();
  const ShaftStep step = shaftRate_.StepAfter(shaftProfiler_.ElapsedTime());
  shaftProfiler_.StartTiming();
  vfo_->SetTuneStep(step.TuneStep);
  vfo_->SetTuneStepLSD(step.TuneStepLSD);
}

void TuningPanel::tmrShaft_Timer() {
  // A radio whose encoder rests, or that has none, is not woken for it.
  if (shaftUpCount_ == 0 && shaftDownCount_ == 0) tmrShaft.SetEnabled(false);
  if (vfo_ == nullptr) return;
  const std::int32_t steps = std::exchange(shaftUpCount_, 0) - std::exchange(shaftDownCount_, 0);
  Step(steps * vfo_->TuneStep());
}

void TuningPanel::AddSettings(SettingsTable& table, SettingsTable& early) {
  table.Add("ShaftAutoRate", ShaftAutoRateOn);
  early.Add("EnableShaftEncoder", ShaftEnabled);
  table.Add("KBDSupport", KBDSupport);
}

}  // namespace quorl
