#include "display/SMeterPanel.h"

#include <algorithm>
#include <cmath>

#include "dsp/VectorKernel.h"
#include "support/Decibels.h"
#include "support/Picture.h"
#include "support/Rounding.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr Colour kScaleInk = 0xFFFFFF;
constexpr int kS9Element = 9;
constexpr std::array<int, 11> kMarkedElements{1, 3, 5, 7, 9, 12, 15, 18, 21, 24, 27};

std::array<SMeterMark, kMarkedElements.size()> MakeScale() {
  std::array<SMeterMark, kMarkedElements.size()> scale;
  for (std::size_t i = 0; i < scale.size(); ++i) {
    const int element = kMarkedElements[i];
    const double overS9 = element * SMeterPanel::kStep - SMeterPanel::kS9;
    scale[i] = {element, overS9 > 0.0 ? FormatPicture(overS9, "+#") : FormatPicture(element, "#")};
  }
  return scale;
}

std::string Reading(float level) {
  const int decibels = RoundDown(Decibels(level));
  const int sUnits = std::clamp(decibels / SMeterPanel::kStep, 0, kS9Element);
  const int over = decibels - RoundHalfEven(SMeterPanel::kS9);
  const std::string text = "S" + std::to_string(sUnits);
  return over > 0 ? text + " +" + std::to_string(over) + " dB" : text;
}

}  // namespace

SMeterPanel::SMeterPanel(ControlRegistry& registry, const PublicVars& vars)
    : picSmeter(registry, "picSmeter"),
      shpSMeterGrid(registry, "shpSMeterGrid", kElements),
      cmdCalibrateSMeter(registry, "cmdCalibrateSMeter"),
      lblSMeter(registry, "lblSMeter"),
      vars_(vars) {
  picSmeter.ForeColour = kScaleInk;
  picSmeter.AccessibleName = "S-meter";
  cmdCalibrateSMeter.Caption = "Cal";
  cmdCalibrateSMeter.ToolTip = "Take the level of now for the noise floor";
  cmdCalibrateSMeter.Click = [this] { cmdCalibrateSMeter_Click(); };
  lblSMeter.AccessibleName = "Signal strength";
  DrawSMeterScale();
  DrawSMeter(0.0F);
}

const std::array<SMeterMark, 11>& SMeterPanel::Scale() {
  static const std::array<SMeterMark, 11> scale = MakeScale();
  return scale;
}

void SMeterPanel::cmdCalibrateSMeter_Click() {
  CalibrateRequested = true;
}

std::string SMeterPanel::Backoff() const {
  return "Meter Backoff=" + FormatPicture(Decibels(NoiseFloor), "#0.00 dB");
}

void SMeterPanel::Update() {
  const float level =
      Sum_S_1(vars_.SignalLevelRing.data(), SignalLevelRingSize) / static_cast<float>(SignalLevelRingSize);
  if (CalibrateRequested) {
    CalibrateRequested = false;
    const double power = Sum_S_1(vars_.SignalPowerRing.data(), SignalPowerRingSize);
    NoiseFloor = static_cast<float>(std::sqrt(power / (double{SignalPowerRingUpperBound} * SamplesPerEvent)));
    DrawSMeterScale();
  }
  SignalLevel = std::max(level - NoiseFloor, 0.0F);
  DrawSMeter(SignalLevel);
}

void SMeterPanel::DrawSMeter(float level) {
  if (inDraw_) return;
  ScopedFlag guard(inDraw_);
  const int last = std::clamp(RoundDown(Decibels(level)) / kStep, 0, kElements - 1);
  for (int i = 0; i < kElements; ++i) shpSMeterGrid(i).Visible = last >= 1 && i <= last;
  lblSMeter.Caption = Reading(level);
}

void SMeterPanel::DrawSMeterScale() {
  picSmeter.Caption = picSmeter.ToolTip = Backoff();
}

}  // namespace quorl
