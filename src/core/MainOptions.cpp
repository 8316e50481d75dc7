#include "core/MainOptions.h"

namespace quorl {

void MainOptions::AddSettings(SettingsTable& table, SettingsTable& early) {
  table.Add("FormCaptionOffOnPwrOn", FormCaptionOffOnPwrOn);
  table.Add("AutoStartSDR", AutoStartSDR);
  early.Add("VFO1.IFType", IFType);
  early.Add("WindowWidth", WindowWidth);
  early.Add("WindowHeight", WindowHeight);
}

}  // namespace quorl
