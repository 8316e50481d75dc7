// Options of the panel as a whole.
#pragma once

#include <cstdint>

#include "config/SettingsTable.h"

namespace quorl {

struct MainOptions {
  bool FormCaptionOffOnPwrOn = false, AutoStartSDR = false;
  std::int32_t IFType = 0;                         // InterfaceType
  std::int32_t WindowWidth = 0, WindowHeight = 0;  // pixels; 0 for the first start

  // `early` is read before the window opens and the interface is made.
  void AddSettings(SettingsTable& table, SettingsTable& early);
};

}  // namespace quorl
