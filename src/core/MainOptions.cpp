#include "core/MainOptions.h"

namespace quorl {

void MainOptions::AddSettings(SettingsTable& table) {
  table.Add("FormCaptionOffOnPwrOn", FormCaptionOffOnPwrOn);
  table.Add("AutoStartSDR", AutoStartSDR);
  table.AddWritten("VFO1.IFType", IFType);  // read when the interface is made
  table.Add("WindowWidth", WindowWidth);
  table.Add("WindowHeight", WindowHeight);
  table.Add("SpectrumAnalyserOn", SpectrumAnalyserOn);
  table.Add("ScrollWheelEnableOverScope", ScrollWheelEnableOverScope);
  table.Add("AutoTrackPresets", AutoTrackPresets);
  table.Add("DRM.RunDreamOnDRM", RunDreamOnDRM);
  table.Add("DRM.CloseSoundcardOnDRM", CloseSoundcardOnDRM);
  table.Add("DRM.PathToDream", PathToDream);
  table.Add("DRM.DreamProgArgs", DreamProgArgs);
  table.Add("DRM.DreamWindowStyle", DreamWindowStyle);
  table.Add("DRM.DreamCloseOnExit", DreamCloseOnExit);
  table.Add("DRM.DreamCloseOnModeChange", DreamCloseOnModeChange);
}

}  // namespace quorl
