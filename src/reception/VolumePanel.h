// The output level: attenuation in the sound card below the middle, gain in software above.
#pragma once

#include "dsp/chain/AGC.h"
#include "reception/PanelContext.h"

namespace quorl {

class VolumePanel {
 public:
  VolumePanel(const PanelContext& context, AGC& agc);

  Frame frAFOut;
  Dial dialOutVol;
  Slider sldOutVolume;
  Label lblOutVol;  // decibels

  void lblOutVol_Wheel();
  void dialOutVol_Change();
  void sldOutVolume_Scroll();

 private:
  void TakeVolume(int value);

  PanelContext context_;
  AGC& agc_;
  bool moving_ = false;  // slider and dial are being moved by code
};

}  // namespace quorl
