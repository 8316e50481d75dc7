// What the instrument keeps between two runs: section "SpectrumAnalyser".
#pragma once

#include <array>
#include <cstdint>

#include "config/SettingsStore.h"
#include "controls/Control.h"
#include "display/analyser/ModeSettings.h"

namespace quorl {

// Those that the instrument uses as they are stored. Colours have blue in the high byte.
struct AnalyserProperties {
  bool Active = false;
  bool SmoothSpectrum = true;
  bool ShowNotch = false, ShowFilter = false;
  bool AutoGain = false;         // no gain and shift ahead of the scale; the level view fits its ends
  bool ReverseSpectrum = false;  // the sweep runs upwards
  bool HideFreqToolTip = false;
  std::int32_t DefaultSmoothCount = 8, SpectrumWidth = 0;
  Colour ControlColourNormal = 0xC0, ControlColourFocused = 0xFF, NotchFilterColour = 0xC0FF60,
         FilterCurveColour = 0xC0, ScopeBackColour = 0, GraticuleColour = 0x7F00, XTextColour = 0xFFFF00,
         YTextColour = 0xFF7F00;
};

// A mode's values stand under ".Mode.0.Chn1.Gain" and so on. Where such a key is missing, the key without
// the mode ("Chn1.Gain") counts for all modes; it is written with those of the mode in force.
struct AnalyserSettings : AnalyserProperties {
  static constexpr float kMostGain = 99.0F, kMostShift = 100.0F;
  static constexpr std::int32_t kMostSmooth = 24;

  std::int32_t Mode = 0, SpectrumSmooth = 8;
  Colour Y1BaseColour = 0xFF00, Y2BaseColour = 0xFFFF;
  // Gain, Shift, Enabled, Trig, LogMode and FastMode of each; the rest is left alone.
  std::array<ModeSettings, ScopeMode::Count> Modes;

  // Missing keys and texts that don't fit leave a value; numbers out of range become the nearest good ones.
  void Read(const SettingsStore& store);
  void Write(SettingsStore& store) const;
};

}  // namespace quorl
