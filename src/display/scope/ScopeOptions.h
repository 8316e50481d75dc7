// What the scope shows beyond the plain picture, each of which can be switched by itself.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "config/SettingsTable.h"
#include "display/analyser/clsSpectrumAnalyser.h"

namespace quorl {

inline constexpr char kScopeSection[] = "Scope";

struct ScopeOptions {
  bool LevelView = false;  // dB below a full-scale sine on round frequencies, instead of the plain scale
  SpectrumWindow Window = SpectrumWindow::None;
  bool Waterfall = false;
  std::int32_t LineBlocks = 1;  // blocks for each line of the waterfall: one of kLineBlocks
  std::int32_t Palette = 0;     // of kPaletteNames
  std::int32_t TimeMarks = 60;  // s between the waterfall's marks: one of kTimeMarks
  bool Cursor = false;
  PeakHolding PeakHold = PeakHolding::Off;
  bool Fill = false;
  bool Passband = false, EdgeDrag = false;
  bool Names = false, BandShading = false;
  bool Gestures = false;
  bool TwoSided = false;

  static constexpr std::array<std::int32_t, 6> kLineBlocks{1, 2, 4, 8, 32, 128};
  static constexpr std::array<std::int32_t, 5> kTimeMarks{0, 15, 60, 300, 900};
  static constexpr std::array<const char*, 3> kPaletteNames{"viridis", "inferno", "grey"};
  static constexpr std::array<const char*, 3> kWindowNames{"none", "Hann", "Blackman-Harris"};
  static constexpr std::array<const char*, 3> kPeakNames{"off", "falling", "staying"};

  // Numbers become the nearest good one; a word that isn't known leaves what there was.
  void AddSettings(SettingsTable& table);
};

// The scope of a first start, into a store that has none yet: on, in decibels, with all that helps to find
// one's way about a band.
void PutScopeDefaults(SettingsStore& store);

}  // namespace quorl
