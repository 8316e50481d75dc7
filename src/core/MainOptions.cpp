#include "core/MainOptions.h"

namespace quorl {

void MainOptions::AddSettings(SettingsTable& table, SettingsTable& early) {
  table.Add("FormCaptionOffOnPwrOn", FormCaptionOffOnPwrOn);
  table.Add("AutoStartSDR", AutoStartSDR);
  early.Add("VFO1.IFType", IFType);
  early.Add("WindowWidth", WindowWidth);
  early.Add("WindowHeight", WindowHeight);
  table.Add("DRM.RunDreamOnDRM", RunDreamOnDRM);
  table.Add("DRM.CloseSoundcardOnDRM", CloseSoundcardOnDRM);
  table.Add("DRM.PathToDream", PathToDream);
  table.Add("DRM.DreamProgArgs", DreamProgArgs);
  table.Add("DRM.DreamWindowStyle", DreamWindowStyle);
  table.Add("DRM.DreamCloseOnExit", DreamCloseOnExit);
  table.Add("DRM.DreamCloseOnModeChange", DreamCloseOnModeChange);
}

}  // namespace quorl
