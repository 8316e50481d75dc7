// Options of the panel as a whole, and those that wait for their owner.
#pragma once

#include <cstdint>
#include <string>

#include "config/SettingsTable.h"

namespace quorl {

struct MainOptions {
  bool FormCaptionOffOnPwrOn = false, AutoStartSDR = false;
  std::int32_t IFType = 0;                         // InterfaceType
  std::int32_t WindowWidth = 0, WindowHeight = 0;  // pixels; 0 for the first start

  // Of the memories and the decoder.
  bool RunDreamOnDRM = false, CloseSoundcardOnDRM = false, DreamCloseOnExit = true,
       DreamCloseOnModeChange = false;
  std::string PathToDream, DreamProgArgs;
  std::int32_t DreamWindowStyle = 1;

  // `early` is read before the window opens and the interface is made.
  void AddSettings(SettingsTable& table, SettingsTable& early);
};

}  // namespace quorl
