// How the two traces are drawn: on or off, gain, shift, brightness, smoothing, scale and trigger.
#pragma once

#include "config/SettingsTable.h"
#include "display/scope/ScopeContext.h"

namespace quorl {

// Most of it is kept for each mode of the instrument; Show brings the mode's own values back.
class ScopeChannels {
 public:
  explicit ScopeChannels(const ScopeContext& context);

  Frame frScopeYMode;
  CheckBox chkTrigOn1, chkTrigOn2;  // chkTrigOn(1), chkTrigOn(2)
  CheckBox chkChn1On, chkChn2On;
  CheckBox chkLog, chkSmoothSpectrum, chkSpectrumAutoGain, chkScopeShowFilters;
  Slider sldSpectrumGain;
  Label lblScopeChn1Gain, lblScopeChn1Shift, lblScopeChn2Gain, lblScopeChn2Shift;
  Label lblSpectrumSmooth, lblY1Bright, lblY2Bright;
  // "Gain", "Shift", the sweep and its unit, "Bright", "Smooth", the gain of the display, "Centre".
  ControlArray<Label> lblScopeCtl;

  void chkTrigOn_Click(int channel);
  void chkChn1On_Click();
  void chkChn2On_Click();
  void chkLog_Click();
  void chkSmoothSpectrum_Click();
  void chkSpectrumAutoGain_Click();
  void chkScopeShowFilters_Click();
  void sldSpectrumGain_Change();

  // What the mode has a use for, with its values.
  void ShowMode(std::int32_t mode);
  void Show();
  void AddSettings(SettingsTable& table);

 private:
  void BindEntries();
  void BindBoxes();
  void Put(int index, float value);
  void TakeBrightness(int index, int channel);

  ScopeContext context_;
  bool showing_ = false;  // the controls are being moved by code
};

}  // namespace quorl
