// The AGC: on or off, its presets, and the two times that make a preset.
#pragma once

#include "config/SettingsTable.h"
#include "interaction/PanelContext.h"

namespace quorl {

// "Attack" holds the delay, for which a peak keeps the gain down, in tenths of a second; "Decay" holds the
// ramp of the gain in tenths of a millisecond. The tool tips tell each by what is heard: a long delay is a
// slow decay, a short ramp is a fast attack. The labels show seconds and milliseconds.
class AGCPanel {
 public:
  explicit AGCPanel(const PanelContext& context);

  Frame frAGC;
  CheckBox chkAGC;
  OptionGroup optAGC;  // AGCPreset; the last one is the user's own, without a button to see
  Slider sldAGCAttack, sldAGCDecay;
  Label lblAGCAttack, lblAGCDecay;

  // Gives a slider the range of its value, before anything moves it.
  void InitialiseSlider(Slider& slider, int index);

  void chkAGC_Click();
  // Undone while the AGC is off.
  void optAGC_Click(int index);
  void sldAGCAttack_Scroll();
  void sldAGCDecay_Scroll();
  void lblAGCAttack_Wheel();
  void lblAGCDecay_Wheel();
  void AddSettings(SettingsTable& table);

 private:
  const AGCSettingsRecord& Preset() const;
  void Show();
  void ShowTimes();
  void ShowTime(int index, std::int32_t value, std::int32_t byDefault, Slider& slider, Label& label);

  PanelContext context_;
  const PublicVars& vars_;
  bool showing_ = false;  // the controls are being moved by code
  bool inAttack_ = false, inDecay_ = false;
  Listening listening_;
};

}  // namespace quorl
