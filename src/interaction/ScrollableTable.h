// The values that are turned on the panel with the wheel and the keys, as a table.
#pragma once

#include <array>

#include "state/PublicConstants.h"

namespace quorl {

// Places in the table of scrollable controls. 0 stands for none.
namespace CtlIndex {
inline constexpr int None = 0, Frequency = 1, ScopeChn1Gain = 2, ScopeChn1Shift = 3, ScopeChn2Gain = 4,
                     ScopeChn2Shift = 5, ScopeXWidth = 6, FilterHi = 7, FilterLo = 8, NB = 9, OutVol = 10,
                     NotchC = 11, NotchW = 12, AGCAttack = 13, AGCDecay = 14, ScopeXCentre = 15,
                     PicScope = 16, IFHi = 17, IFLo = 18, SpectrumSmooth = 19, BFO = 20, Y1Bright = 21,
                     Y2Bright = 22, ScopeTop = 23, ScopeFloor = 24, ScopeCursor = 25;
inline constexpr int Count = 26;
// The arrow keys go round 1 to this one.
inline constexpr int LastByArrows = 20;
}  // namespace CtlIndex

struct ScrollableStart {
  const char* Label;     // name of the label, null for an entry that has none
  const char* WhatItIs;  // as a screen reader says it; the unit is in the value's text
  float MinValue, MaxValue, DefaultValue;
  float SmallStep, NormalStep, LargeStep;
  const char* Format;
  bool ShowValue;   // the table writes the label; where not, the owner's OnChange does in its own unit
  double Unit = 1;  // of the value, in that of the label
};

inline constexpr float kHighestFrequency = 2147483647.0F;  // dHz
inline constexpr float kBFOReach = static_cast<float>(FSampling) / 4.0F;

// Edges of the filters start at 0 here: their panels set them from the filter tables.
inline constexpr std::array<ScrollableStart, CtlIndex::Count> kScrollableStarts{{
    {nullptr, "", 0, 0, 0, 0, 0, 0, "", false},
    {nullptr, "Frequency", 0, kHighestFrequency, 0, 0.1F, 1, 10, "", false},
    {"lblScopeChn1Gain", "Channel 1 gain", 0, 99, 1, 0.01F, 0.1F, 1, "#0.0", true},
    {"lblScopeChn1Shift", "Channel 1 shift", -100, 100, 0, 0.1F, 1, 10, "#0", true},
    {"lblScopeChn2Gain", "Channel 2 gain", 0, 99, 1, 0.01F, 0.1F, 1, "#0.0", true},
    {"lblScopeChn2Shift", "Channel 2 shift", -100, 100, 0, 0.1F, 1, 10, "#0", true},
    {"lblScopeXWidth", "Scope width", 10, 1023, 1023, 1, 10, 50, "#,###", true},
    {"lblFilterHi", "Filter high edge", 0, 12000, 0, 1, 10, 50, "#0", true},
    {"lblFilterLo", "Filter low edge", 0, 1999, 0, 1, 10, 50, "#0", true},
    {"lblNB", "Noise blanker threshold", 0, 10000, 0, 1, 10, 50, "#0.00", false, 0.002},
    {"lblOutVol", "Volume", -10000, 8000, 0, 10, 50, 200, "0.0", false},  // its panel tells the decibels
    {"lblNotchC", "Notch centre", 0, 6000, 1000, 1, 10, 50, "#0", true},
    {"lblNotchW", "Notch width", 0, 5000, 100, 1, 10, 50, "#0", true},
    {"lblAGCAttack", "AGC decay", 5, 100, 5, 1, 1, 10, "#0.0", false, 0.1},
    {"lblAGCDecay", "AGC attack", 10, 200, 5, 1, 10, 50, "#0.0", false, 0.1},
    {"lblScopeXCentre", "Scope centre", 0, 1023, 511, 1, 10, 50, "#,###", true},
    {nullptr, "Scope", -1, 1, 0, 1, 1, 1, "", false},
    {"lblIFHi", "IF filter high edge", 0, 6000, 0, 1, 10, 50, "#0", true},
    {"lblIFLo", "IF filter low edge", 0, 6000, 0, 1, 10, 50, "#0", true},
    {"lblSpectrumSmooth", "Spectrum smoothing", 1, 24, 1, 1, 1, 4, "#0", true},
    {"lblBFO", "BFO", -kBFOReach, kBFOReach, 0, 1, 20, 100, "#0", true},
    {"lblY1Bright", "Channel 1 brightness", 1, 100, 100, 1, 2, 10, "#0", true},
    {"lblY2Bright", "Channel 2 brightness", 1, 100, 100, 1, 2, 10, "#0", true},
    {"lblScopeTop", "Top of the scope", -60, 20, 0, 1, 5, 10, "#0", true},
    {"lblScopeFloor", "Floor of the scope", -160, -20, -120, 1, 5, 10, "#0", true},
    {"lblScopeCursor", "Scope cursor", 0, 1023, 512, 1, 10, 50, "#0", false},
}};

// The order in which start-up tells them to the log; 16 is the scope picture.
inline constexpr std::array<int, 18> kScrollableStartOrder{2,  3,  4,  5,  7, 8,  9,  10, 11,
                                                           12, 13, 14, 15, 6, 16, 17, 18, 19};

}  // namespace quorl
