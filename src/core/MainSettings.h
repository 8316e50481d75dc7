// The main panel's section of the settings store: which variable lives under which key.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "config/SettingsStore.h"
#include "controls/Control.h"

namespace quorl {

inline constexpr char kMainSection[] = "frmMain";

// Options of the panel that have no home elsewhere, as the store holds them.
struct MainOptions {
  std::int32_t NoiseFloor = 1000000;  // 16-bit units times 100000
  bool ExtendedDisplay = false, StandardDisplay = false, CompactDisplay = false, FullDisplay = false;
  std::int32_t SpectrumAnalyserOn = 0, PerfStatsOn = 0;  // check boxes
  bool ScrollWheelEnableOverScope = false;
  std::int32_t CurrentPlaybackDevice = 1, CurrentCaptureDevice = 1;  // from 1
  std::string CurrentPlaybackDeviceName, CurrentCaptureDeviceName;   // decide where they are still there
  bool AutoDDSRefresh = false;
  bool RunDreamOnDRM = false, CloseSoundcardOnDRM = false, DreamCloseOnExit = true,
       DreamCloseOnModeChange = false;
  std::string PathToDream, DreamProgArgs;
  std::int32_t DreamWindowStyle = 1;
  bool AutoTrackPresets = true, FormCaptionOffOnPwrOn = false, AutoStartSDR = false;
  bool ShortDelay = false;                             // of the sound, at the next start
  std::int32_t IFType = 0;                             // InterfaceType
  float AGCAttack = 0.0F, AGCDecay = 0.0F, NB = 0.0F;  // control values
  std::int32_t LastOutputVolume = 0;                   // the volume control, to start with
  std::int32_t WindowWidth = 0, WindowHeight = 0;      // pixels; 0 for the first start
  std::int32_t LastTunedFrequency = 0, OutputVolume = 0, NotchCentre = 0, NotchWidth = 0;
};

// One key and its variable. Those that are not read back are kept for who reads the file: their values return
// by way of the memories.
struct StoredSetting {
  std::string Key;
  bool ReadBack = true;
  std::variant<std::int32_t*, float*, bool*, std::string*, Colour*> Variable;
};

// A missing or unfit text leaves the variable as it was.
void ReadSetting(const SettingsStore& store, const StoredSetting& setting);
void WriteSetting(SettingsStore& store, const StoredSetting& setting);

}  // namespace quorl
