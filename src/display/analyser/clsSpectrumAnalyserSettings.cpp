// The instrument's settings, and its picture's scale after them.
#include "display/analyser/clsSpectrumAnalyser.h"

namespace quorl {

AnalyserSettings clsSpectrumAnalyser::Stored() const {
  AnalyserSettings stored;
  static_cast<AnalyserProperties&>(stored) = *this;
  stored.Mode = mode_;
  stored.SpectrumSmooth = SpectrumSmooth();
  stored.Y1BaseColour = baseColours_[0];
  stored.Y2BaseColour = baseColours_[1];
  stored.Modes = modes_;
  return stored;
}

void clsSpectrumAnalyser::ReadSettings(const SettingsStore& store) {
  AnalyserSettings stored = Stored();
  for (ModeSettings& mode : stored.Modes) {
    mode.Chn1 = {.Trig = true};
    mode.Chn2 = {};
    mode.LogMode = mode.FastMode = false;
  }
  stored.Read(store);
  static_cast<AnalyserProperties&>(*this) = stored;
  SetSpectrumSmooth(stored.SpectrumSmooth);
  baseColours_ = {stored.Y1BaseColour, stored.Y2BaseColour};
  Brighten();
  modes_ = stored.Modes;
  for (mode_ = 0; mode_ < ScopeMode::Count; ++mode_) {
    SetChn1Shift(Chn1Shift());
    SetChn2Shift(Chn2Shift());
    Settings().TriggerChn = Chn1Trig() ? 1 : Chn2Trig() ? 2 : 0;
  }
  SetMode(stored.Mode);
}

void clsSpectrumAnalyser::WriteSettings(SettingsStore& store) const {
  Stored().Write(store);
}

}  // namespace quorl
