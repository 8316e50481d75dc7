// The output level: attenuation in the sound card below the middle, gain in software above; and mute.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "config/SettingsTable.h"
#include "interaction/PanelContext.h"

namespace quorl {

class VolumePanel {
 public:
  explicit VolumePanel(const PanelContext& context);

  Frame frAFOut;
  Dial dialOutVol;
  Slider sldOutVolume;
  Label lblOutVol;   // decibels of the control's scale; the tool tip tells those that are applied
  CheckBox chkMute;  // ends where the volume is turned

  std::function<void(bool muted)> OnMute;

  void chkMute_Click();
  void lblOutVol_Wheel();
  void dialOutVol_Change();
  void sldOutVolume_Scroll();

  // The volume of the last time, kept until Restore.
  void AddSettings(SettingsTable& table);
  void Restore();

 private:
  void Show();
  void TakeVolume(int value);
  std::string Effect() const;

  PanelContext context_;
  std::string gestures_;
  std::int32_t lastVolume_ = 0;  // of the control
  bool moving_ = false;          // slider and dial are being moved by code
  Listening listening_;
};

}  // namespace quorl
