// The notch: by hand or on the strongest tone, on the audio or on the IF, or mirrored into a narrow pass
// band.
#pragma once

#include <functional>

#include "config/SettingsTable.h"
#include "interaction/PanelContext.h"

namespace quorl {

// While the notch is off, clicks on its mode, type and mirror are undone.
class NotchPanel {
 public:
  explicit NotchPanel(const PanelContext& context);

  Frame frNotch;
  CheckBox chkNotchOn;
  OptionGroup optNotch;   // NotchModes
  CheckBox chkNotchAuto;  // the same choice as a switch
  CheckBox chkNotchType;  // ticked: on the IF
  CheckBox chkNotchMirror;
  Slider sldNotch, sldNotchWidth;
  Label lblNotch;  // frequency of the strongest tone; seen while the notch follows it
  Label lblNotchC, lblNotchCDesc;
  Label lblNotchW, lblNotchWDesc;

  // Shows or hides the notch in the spectrum display. May be empty.
  std::function<void(bool)> ShowNotch;

  // Ranges and first values, before anything moves them.
  void InitialiseDefaults();

  void chkNotchOn_Click();
  void optNotch_Click(int index);
  void chkNotchAuto_Click();
  void chkNotchType_Click();
  void chkNotchMirror_Click();
  void sldNotch_Scroll();
  void sldNotchWidth_Scroll();
  void lblNotchC_Wheel();
  void lblNotchW_Wheel();

  // Shows PeakFrequency; for after a NotchHousekeeping that has found a new one.
  void ShowPeak();
  void AddSettings(SettingsTable& table);

 private:
  void ConnectButtons();
  // What the receiver has, to buttons, labels and sliders.
  void Show();
  void ShowButtons();
  void ShowCentre();
  void ShowWidth();
  void EnableControls();

  PanelContext context_;
  const PublicVars& vars_;
  bool showing_ = false;  // the controls are being moved by code
  bool shown_ = false;    // in the spectrum display
  bool inCentre_ = false, inWidth_ = false;
  Listening listening_;
};

}  // namespace quorl
