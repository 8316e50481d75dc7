// The receiver's memory in records: band plans, their sub-bands, the presets of these.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorl {

// Buttons of the panel.
inline constexpr std::int32_t kSubBandButtons = 18, kPresetButtons = 12;
inline constexpr std::int32_t kNotSet = -1;  // in a frequency

// How something was listened to. Frequencies and edges in hertz; a negative edge stands for the one of the
// filter's table.
struct TuningSettings {
  bool Changed = false;  // captured since it was loaded: only then it is written
  std::int32_t FreqCurrent = 0;
  bool HiSideLO = false;  // not stored
  bool LowSideLO = false;
  std::int32_t TuneStep = 0;  // dHz
  std::int32_t FilterMode = 0, FilterHi = 0, FilterLo = 0;
  bool MusicModeActive = false, DynFilterActive = false;
  bool IFFilterActive = false;
  std::int32_t IFFilterMode = 0, IFFilterLo = 0, IFFilterHi = 0;
  float AGCAttack = 0, AGCDecay = 0;
  bool AGCOn = false;
  std::int32_t AGCMode = 0;
  bool NotchActive = false;
  std::int32_t NotchMode = 0, NotchType = 0, NotchFilterCenter = 0, NotchFilterWidth = 0;
  bool NotchMirror = false;
  std::int32_t DemodMode = 0;
  float OutputAttenuation = 0;
  // What a plan made for any board leaves out.
  bool HasLowSideLO = false, HasOutputAttenuation = false;

  bool operator==(const TuningSettings&) const = default;
};

struct Preset {
  std::string Name;
  std::int32_t Index = 0;
  std::string Caption, Description;
  TuningSettings Settings;
  bool Active = false;  // the sub-band's chosen one
  std::string When;     // "2026-11-23 18:05:09"

  bool operator==(const Preset&) const = default;
};

struct SubBand {
  std::string Name;
  std::int32_t Index = 0;
  std::string Caption, Description;
  TuningSettings Settings;  // as it was left
  std::int32_t FreqMin = kNotSet, FreqMax = kNotSet;
  std::vector<Preset> Presets;  // 0 to MaxPresets
  std::int32_t ActivePreset = kNotSet;
  std::int32_t NumPresets = 0;    // highest index that is read
  std::int32_t PresetsBound = 0;  // presets that are written
  bool Used = false;              // has a button
  bool Visited = false;           // since the start

  bool operator==(const SubBand&) const = default;
};

// Whether its edges say where it is: not where they are missing or hold half of the short waves.
inline bool IsNarrow(const SubBand& band) {
  constexpr std::int32_t kWidest = 2000000;
  return band.Used && band.FreqMin >= 0 && band.FreqMax > band.FreqMin &&
         band.FreqMax - band.FreqMin <= kWidest;
}

struct BandPlan {
  std::string Name;  // the file's, without its ending
  std::int32_t Index = 0;
  std::string Caption, Description;
  bool Active = false;
  std::int32_t ActiveSubBand = 0;
  std::vector<SubBand> SubBands;  // 0 to MaxSubBands
  std::int32_t NumSubBands = 0;   // highest index that is used
  std::int32_t MaxSubBands = kSubBandButtons, MaxPresets = kPresetButtons;
  std::string FileName;  // path
  bool Loaded = false;
  bool ReadOnly = false;  // its file is to stay as it is

  bool operator==(const BandPlan&) const = default;
};

// By its places from 0, among those that have a button; null where nothing is stored there.
inline const Preset* FindPreset(const BandPlan& plan, std::int32_t subBand, std::int32_t preset) {
  if (subBand < 0 || subBand >= kSubBandButtons || preset < 0 || preset >= kPresetButtons) return nullptr;
  if (static_cast<std::size_t>(subBand) >= plan.SubBands.size()) return nullptr;
  const SubBand& band = plan.SubBands[static_cast<std::size_t>(subBand)];
  const auto place = static_cast<std::size_t>(preset);
  const bool stored =
      band.Used && place < band.Presets.size() && band.Presets[place].Settings.FreqCurrent >= 1;
  return stored ? &band.Presets[place] : nullptr;
}

}  // namespace quorl
