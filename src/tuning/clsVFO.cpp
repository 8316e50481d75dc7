#include "tuning/clsVFO.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "support/CheckedMath.h"
#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"
#include "tuning/TuningError.h"

namespace quorl {
namespace {

constexpr double kLargestGrid = 10000.0;  // dHz
constexpr std::int32_t kDeciHertz = 10;

std::int32_t InHertz(std::int32_t dHz) {
  return *DivideDown(dHz, kDeciHertz);
}

Failure StoreHertz(std::int32_t hertz, std::int32_t& field) {
  const auto dHz = Multiply(hertz, kDeciHertz);
  if (!dHz) return Fail(TuningError::Overflow, NumberText(hertz) + " Hz is beyond the VFO's range");
  field = *dHz;
  return {};
}

std::string RoundedText(double value) {
  return NumberText(std::floor(value + 0.5));
}

}  // namespace

clsVFO::clsVFO(SettingsStore& settings) : settings_(settings) {}

Failure clsVFO::SetTunedFrequency(std::int32_t dHz) {
  if (setting_) {
    return {};
  }
  const ScopedFlag setting(setting_);
  const auto magnitude = Absolute(dHz);
  if (!magnitude) return Fail(TuningError::Overflow, NumberText(dHz) + " dHz is beyond the VFO's range");
  tunedFrequency_ = *magnitude;
  if (!OscType) return Fail(TuningError::ObjectNotSet, "The VFO has no oscillator");
  // The test takes the IF in hertz and the clamp in dHz: requests between the two limits pass.
  const auto limit = Subtract(OscType->MaxFreq, IFFrequency());
  const auto clamped = Subtract(OscType->MaxFreq, Multiply(IFFrequency(), kDeciHertz));
  if (!limit || (tunedFrequency_ > *limit && !clamped)) {
    return Fail(TuningError::Overflow, "The VFO's upper limit is beyond its range");
  }
  // A clock too low for the IF tunes nothing; what was wanted stands until it is put right.
  if (tunedFrequency_ > *limit && *clamped >= 0) tunedFrequency_ = *clamped;
  Refresh();
  return {};
}

std::int32_t clsVFO::IFFrequency() const {
  return InHertz(ifFrequency_);
}
Failure clsVFO::SetIFFrequency(std::int32_t hertz) {
  return StoreHertz(hertz, ifFrequency_);
}
std::int32_t clsVFO::CalibOffset() const {
  return InHertz(calibOffset_);
}
Failure clsVFO::SetCalibOffset(std::int32_t hertz) {
  return StoreHertz(hertz, calibOffset_);
}

void clsVFO::SetTuneStep(double dHz) {
  if (!TuneStepLock) {
    tuneStep_ = dHz;
    SetTuneStepLSD(dHz);
  }
}

void clsVFO::SetTuneStepLSD(double dHz) {
  if (!TuneStepLock) tuneStepLSD_ = std::min(dHz, kLargestGrid);
}

std::string clsVFO::FormattedTunedFreq() const {
  return FormatPicture(tunedFrequency_, "000000000");
}

void clsVFO::SetFormattedTunedFreq(const std::string& text) {
  enteredFrequency_ = ParseInt32(text).value_or(enteredFrequency_);
}

double clsVFO::GridPoint(std::int32_t dHz) const {
  return tuneStepLSD_ != 0 ? std::floor(dHz / tuneStepLSD_ + 0.5) * tuneStepLSD_ : snapped_;
}

std::int32_t clsVFO::OscillatorFor(std::int32_t dHz) const {
  const auto tuned = Add(dHz, calibOffset_);
  const auto beside = HiSideLO ? Add(tuned, ifFrequency_) : Subtract(tuned, ifFrequency_);
  return Absolute(Multiply(beside, OscMultiplier)).value_or(OscOut);
}

std::int64_t clsVFO::HighestNoted() const {
  const bool limits = OscType && OscType->MaxFreq >= std::int64_t{IFFrequency()} * kDeciHertz;
  return limits ? std::int64_t{OscType->MaxFreq} - IFFrequency() : std::numeric_limits<std::int32_t>::max();
}

std::int64_t clsVFO::Reach() const {
  if (!OscType) return 0;
  const std::int64_t multiplier = std::max<std::int64_t>(std::abs(std::int64_t{OscMultiplier}), 1);
  const std::int64_t oscillator = (std::int64_t{OscType->MaxFreq} - 1) / multiplier;
  return oscillator - calibOffset_ - (HiSideLO ? ifFrequency_ : -ifFrequency_);
}

void clsVFO::Refresh() {
  OscOut = OscillatorFor(tunedFrequency_);
  if (const auto oscillator = OscType) oscillator->SetFrequency(OscOut);
}

double clsVFO::Inc_Freq(double Increment) {
  const bool autoUpdate = AutoUpdate;
  AutoUpdate = false;
  ++stepsUnderWay_;
  snapped_ = GridPoint(tunedFrequency_);
  if (const auto target = ToInt32(snapped_ + (Increment == 0 ? tuneStep_ : Increment))) {
    SetTunedFrequency(*target);
  }
  AutoUpdate = autoUpdate;
  --stepsUnderWay_;
  if (!IsSuperseded()) Refresh();
  return tunedFrequency_;
}

double clsVFO::Dec_Freq(double& Decrement) {
  if (Decrement == 0) Decrement = tuneStep_;
  Decrement = -std::fabs(Decrement);
  return Inc_Freq(Decrement);
}

void clsVFO::RestoreSettings() {
  std::int32_t hertz = IFFrequency();
  settings_.Read(Name, "IFFrequency", hertz);
  SetIFFrequency(hertz);
  settings_.Read(Name, "HiSideLo", HiSideLO);
  settings_.Read(Name, "AutoUpdate", AutoUpdate);
  std::int32_t tuned = tunedFrequency_;
  settings_.Read(Name, "TunedFrequency", tuned);
  tunedFrequency_ = Absolute(tuned).value_or(tunedFrequency_);
  settings_.Read(Name, "TuneStep", tuneStep_);
  settings_.Read(Name, "OscMultiplier", OscMultiplier);
  settings_.Read(Name, "CalibOffset", calibOffset_);
  settings_.Read(Name, "DDSInterfaceType", DDSInterfaceType);
}

void clsVFO::SaveSettings() const {
  settings_.SaveSetting(Name, "IFFrequency", NumberText(IFFrequency()));
  settings_.SaveSetting(Name, "HiSideLo", FlagText(HiSideLO));
  settings_.SaveSetting(Name, "AutoUpdate", FlagText(AutoUpdate));
  settings_.SaveSetting(Name, "TunedFrequency", NumberText(tunedFrequency_));
  settings_.SaveSetting(Name, "TuneStep", RoundedText(tuneStep_));
  settings_.SaveSetting(Name, "OscMultiplier", NumberText(OscMultiplier));
  settings_.SaveSetting(Name, "CalibOffset", NumberText(CalibOffset()));
  settings_.SaveSetting(Name, "DDSInterfaceType", NumberText(DDSInterfaceType));
}

}  // namespace quorl
