#include "display/SMeterPanel.h"

#include <algorithm>
#include <cmath>

#include "dsp/kernel/VectorKernel.h"
#include "support/Decibels.h"
#include "support/NumberPicture.h"
#include "support/Rounding.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr Colour kScaleInk = 0xFFFFFF;
constexpr int kS9Element = 9;
// S-units up to S9 take an element each.
constexpr std::array<int, 5> kMarkedUnits{1, 3, 5, 7, kS9Element};
constexpr std::array<int, 5> kMarkedOverS9{20, 40, 60, 80, 100};

}  // namespace

std::string SMeterReading(float level) {
  const int decibels = RoundDown(Decibels(level));
  const int sUnits = std::clamp(decibels / SMeterPanel::kStep, 0, kS9Element);
  const int over = decibels - RoundHalfEven(SMeterPanel::kS9);
  const std::string text = "S" + std::to_string(sUnits);
  return over > 0 ? text + " +" + std::to_string(over) + " dB" : text;
}

SMeterPanel::SMeterPanel(ControlRegistry& registry, const PublicVars& vars)
    : picSmeter(registry, "picSmeter"),
      shpSMeterGrid(registry, "shpSMeterGrid", kElements),
      cmdCalibrateSMeter(registry, "cmdCalibrateSMeter"),
      lblSMeter(registry, "lblSMeter"),
      vars_(vars) {
  picSmeter.ForeColour = kScaleInk;
  picSmeter.AccessibleName = "S-meter";
  cmdCalibrateSMeter.Caption = "Cal";
  cmdCalibrateSMeter.ToolTip =
      "Takes what is heard now as zero: tune to a free frequency first; right click for the usual 20 dB";
  cmdCalibrateSMeter.Click = [this] { cmdCalibrateSMeter_Click(); };
  cmdCalibrateSMeter.MouseDown = [this](const MouseEvent& at) {
    if (at.Button == MouseButton::Right) RestoreFloor();
  };
  lblSMeter.AccessibleName = "Signal strength";
  DrawSMeterScale();
  DrawSMeter(0.0F);
}

void SMeterPanel::cmdCalibrateSMeter_Click() {
  CalibrateRequested = true;
}

void SMeterPanel::RestoreFloor() {
  CalibrateRequested = false;
  NoiseFloor = kFloor;
  DrawSMeterScale();
}

void SMeterPanel::Rest() {
  CalibrateRequested = false;
  cmdCalibrateSMeter.Enabled = false;
  DrawSMeter(0.0F);
}

std::string SMeterPanel::Backoff() const {
  return "Meter Backoff=" + FormatPicture(Decibels(NoiseFloor), "#0.00 dB");
}

void SMeterPanel::Update() {
  cmdCalibrateSMeter.Enabled = true;
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
  lblSMeter.Caption = SMeterReading(level);
}

void SMeterPanel::DrawSMeterScale() {
  for (const int unit : kMarkedUnits) shpSMeterGrid(unit).Caption = FormatPicture(unit, "#");
  for (const int over : kMarkedOverS9) {
    shpSMeterGrid((RoundDown(kS9) + over) / kStep).Caption = FormatPicture(over, "+#");
  }
  picSmeter.Caption = picSmeter.ToolTip = Backoff();
}

void SMeterPanel::AddSettings(SettingsTable& table) {
  constexpr double kScale = 100000.0;  // the store holds the floor as a whole number
  table.Add<std::int32_t>(
      "NoiseFloor", [this] { return RoundHalfEven(NoiseFloor * kScale); },
      [this](std::int32_t stored) {
        NoiseFloor = static_cast<float>(stored / kScale);
        DrawSMeterScale();
      });
}

}  // namespace quorl
