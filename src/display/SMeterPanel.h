// The S-meter: a bar of 28 steps of 6 dB over a noise floor that can be measured.
#pragma once

#include <array>
#include <string>

#include "config/SettingsTable.h"
#include "controls/Controls.h"
#include "state/PublicVars.h"

namespace quorl {

// A level over the noise floor, in 16-bit units, as an operator says it: "S7", "S9 +12 dB".
std::string SMeterReading(float level);

class SMeterPanel {
 public:
  static constexpr int kElements = 28;
  static constexpr int kStep = 6;         // dB for each element
  static constexpr double kS9 = 54.0;     // dB: S9 on the scale
  static constexpr float kFloor = 10.0F;  // noise floor to start from, 16-bit units

  SMeterPanel(ControlRegistry& registry, const PublicVars& vars);

  Picture picSmeter;  // caption: what the floor takes off
  // Visible elements make the bar; the caption of one is what the scale says under it.
  ControlArray<Picture> shpSMeterGrid;
  CommandButton cmdCalibrateSMeter;
  Label lblSMeter;  // the reading in words, "S9 +6 dB"

  float NoiseFloor = kFloor;  // 16-bit units; DrawSMeterScale after setting it
  float SignalLevel = 0.0F;   // mean of the last blocks over the floor
  bool CalibrateRequested = false;

  void cmdCalibrateSMeter_Click();
  // Back to the floor of a receiver that was never calibrated.
  void RestoreFloor();
  // Once for each block: measures the floor where that was asked for, and moves the bar.
  void Update();
  // No signal comes any more: the bar goes out, and there is nothing to calibrate on.
  void Rest();
  // `level` in 16-bit units.
  void DrawSMeter(float level);
  // Writes the scale, and the caption for the floor in force.
  void DrawSMeterScale();
  void AddSettings(SettingsTable& table);

 private:
  std::string Backoff() const;

  const PublicVars& vars_;
  bool inDraw_ = false;
};

}  // namespace quorl
