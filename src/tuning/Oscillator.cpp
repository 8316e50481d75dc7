#include "tuning/Oscillator.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "support/CheckedMath.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"
#include "tuning/TuningError.h"

namespace quorl {
namespace {

constexpr double kTwoTo32 = 4294967296.0;
// What the chip gets where the true word needs a 33rd bit: at MaxFreq itself.
constexpr std::int32_t kOverflowWord = 2;

constexpr char kDefaultClkIn[] = "50000000";  // Hz
constexpr double kDefaultClkInHz = 50000000.0;
constexpr double kLowestClkIn = 1.0, kHighestClkIn = 429496729.0;

// A clock that a chip can have.
std::optional<double> ClockIn(const std::string& text) {
  const auto hertz = ParseDouble(text);
  return hertz && *hertz >= kLowestClkIn && *hertz <= kHighestClkIn ? hertz : std::nullopt;
}

}  // namespace

Oscillator::Oscillator(SettingsStore& settings, Dialogs& dialogs, std::string name, double clock)
    : Name(std::move(name)), settings_(settings), dialogs_(dialogs), clock_(clock) {}

Failure Oscillator::SetClkIn(double hertz) {
  const double clock = hertz * 10;
  const auto maxFreq = ToInt32(clock / 2);
  if (!maxFreq) {
    return Fail(TuningError::Overflow, Name + ": a clock of " + NumberText(hertz) + " Hz is too high");
  }
  if (clock == 0) return Fail(TuningError::DivisionByZero, Name + ": the clock must not be 0 Hz");
  clock_ = clock;
  MaxFreq = *maxFreq;
  factor_ = kTwoTo32 / clock_;
  return {};
}

double Oscillator::StoredClkIn(const SettingsStore& settings, const std::string& name) {
  return ClockIn(settings.GetSetting(name, "ClkIn", kDefaultClkIn)).value_or(kDefaultClkInHz);
}

Failure Oscillator::RestoreClock() {
  const std::string text = settings_.GetSetting(Name, "ClkIn", kDefaultClkIn);
  if (const auto hertz = ClockIn(text)) return SetClkIn(*hertz);
  SetClkIn(kDefaultClkInHz);
  return Fail(TuningError::Overflow, Name + ": the stored ClkIn '" + text + "' is no clock from " +
                                         NumberText(kLowestClkIn) + " to " + NumberText(kHighestClkIn) +
                                         " Hz - " + kDefaultClkIn + " Hz is taken");
}

void Oscillator::Save() const {
  if (HasFactor()) settings_.SaveSetting(Name, "CLKIn", NumberText(ClkIn()));
}

double Oscillator::ClkIn() const {
  return std::floor(clock_ / 10 + 0.5);
}

std::int32_t Oscillator::TuningWord(std::int32_t dHz) const {
  return ToInt32(dHz * factor_).value_or(kOverflowWord);
}

std::int32_t Oscillator::SetFrequency(std::int32_t dHz) {
  if (busy_) return dHz;
  const ScopedFlag busy(busy_);
  if (!HasFactor()) {
    dialogs_.ShowMessage(
        {.Text = "Clkin is not set correctly, Clkin=" + NumberText(ClkIn()), .Title = kProductName});
    return dHz;
  }
  const std::int32_t used = std::min(dHz, MaxFreq);
  SendTuningWord(TuningWord(used));
  return used;
}

}  // namespace quorl
