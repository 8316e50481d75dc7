// The instrument's settings, and its picture's scale after them.
#include "display/analyser/clsSpectrumAnalyser.h"

namespace quorl {

AnalyserSettings clsSpectrumAnalyser::Stored() const {
  AnalyserSettings stored;
  stored.Active = Active;
  stored.SmoothSpectrum = SmoothSpectrum;
  stored.ShowNotch = ShowNotch;
  stored.ShowFilter = ShowFilter;
  stored.AutoGain = AutoGain;
  stored.ReverseSpectrum = ReverseSpectrum;
  stored.HideFreqToolTip = HideFreqToolTip;
  stored.Mode = mode_;
  stored.SpectrumSmooth = SpectrumSmooth();
  stored.DefaultSmoothCount = DefaultSmoothCount;
  stored.SpectrumWidth = SpectrumWidth;
  stored.Y1BaseColour = baseColours_[0];
  stored.Y2BaseColour = baseColours_[1];
  stored.ControlColourNormal = ControlColourNormal;
  stored.ControlColourFocused = ControlColourFocused;
  stored.NotchFilterColour = NotchFilterColour;
  stored.FilterCurveColour = FilterCurveColour;
  stored.ScopeBackColour = ScopeBackColour;
  stored.GraticuleColour = GraticuleColour;
  stored.XTextColour = XTextColour;
  stored.YTextColour = YTextColour;
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
  Active = stored.Active;
  SmoothSpectrum = stored.SmoothSpectrum;
  ShowNotch = stored.ShowNotch;
  ShowFilter = stored.ShowFilter;
  AutoGain = stored.AutoGain;
  ReverseSpectrum = stored.ReverseSpectrum;
  HideFreqToolTip = stored.HideFreqToolTip;
  SetSpectrumSmooth(stored.SpectrumSmooth);
  DefaultSmoothCount = stored.DefaultSmoothCount;
  baseColours_ = {stored.Y1BaseColour, stored.Y2BaseColour};
  Brighten();
  ControlColourNormal = stored.ControlColourNormal;
  ControlColourFocused = stored.ControlColourFocused;
  NotchFilterColour = stored.NotchFilterColour;
  FilterCurveColour = stored.FilterCurveColour;
  ScopeBackColour = stored.ScopeBackColour;
  GraticuleColour = stored.GraticuleColour;
  XTextColour = stored.XTextColour;
  YTextColour = stored.YTextColour;
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
