// The seventeen colours that a user can choose, of the panel and of the scope, and what they are called.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "config/ColourSchemes.h"

namespace quorl {

// In the order of a theme file's keys; the last two stand in none.
enum class Swatch : std::size_t {
  Background,
  FrameFocus,
  FrameNormal,
  Label,
  Tuning,
  NormalScrollLabel,
  FocusScrollLabel,
  ScopeBack,
  Graticule,
  Y1,
  Y2,
  NotchFilter,
  FilterCurve,
  XText,
  YText,
  ControlNormal,  // of a scope's own values; kept, nothing is painted in these two at present
  ControlFocused
};
inline constexpr std::size_t kSwatchCount = 17, kThemeKeyCount = 15;

struct SwatchName {
  const char* Key;      // in a theme file, and of the control that shows the colour
  const char* Button;   // that changes it
  const char* Caption;  // for a person
};
inline constexpr std::array<SwatchName, kSwatchCount> kSwatchNames{{
    {"shpSDRBackGroundColour", "cmdSDrBackGroundColour", "Background"},
    {"shpSDRFrameFocusColour", "cmdSDrFrameFocusColour", "Accent, card under the pointer"},
    {"shpSDRFrameNormalColour", "cmdSDrFrameNormalColour", "Card title"},
    {"shpSDRLabelColour", "cmdSDrLabelColour", "Label"},
    {"shpSDRTuningColour", "cmdSDrTuningColour", "Tuning"},
    {"shpNormalScrollLabelColour", "cmdSDrNormalScrollLabelColour", "Number"},
    {"shpFocusScrollLabelColour", "cmdSDrFocusScrollLabelColour", "Number that is turned"},
    {"shpScopeBackColour", "cmdScopeBackColour", "Background"},
    {"shpScopeGraticuleColour", "cmdScopeGraticuleColour", "Graticule"},
    {"shpScopeY1Colour", "cmdScopeY1Colour", "Channel 1"},
    {"shpScopeY2Colour", "cmdScopeY2Colour", "Channel 2"},
    {"shpScopeNotchFilterColour", "cmdScopeNotchFilterColour", "Notch"},
    {"shpScopeFilterCurveColour", "cmdScopeFilterCurveColour", "Filter curve"},
    {"shpScopeXTextColour", "cmdScopeXTextColour", "Scale below"},
    {"shpScopeYTextColour", "cmdScopeYTextColour", "Scale beside"},
    {"shpScopeControlNormalColour", "cmdScopeControlNormalColour", "Scope value"},
    {"shpScopeControlFocusedColour", "cmdScopeControlFocusedColour", "Scope value, turned"},
}};
inline constexpr std::size_t kFirstScopeSwatch = static_cast<std::size_t>(Swatch::ScopeBack);

// Blue in the high byte.
class ThemeColours {
 public:
  Colour& operator[](Swatch swatch) { return colours_[static_cast<std::size_t>(swatch)]; }
  Colour operator[](Swatch swatch) const { return colours_[static_cast<std::size_t>(swatch)]; }
  bool operator==(const ThemeColours&) const = default;
  // Whether a file would hold the same.
  bool SameTheme(const ThemeColours& other) const {
    return std::equal(colours_.begin(), colours_.begin() + kThemeKeyCount, other.colours_.begin());
  }

 private:
  std::array<Colour, kSwatchCount> colours_{};
};

// The seven of the panel, each way.
void TakePanelColours(const ColourSchemes& from, ThemeColours& to);
void GivePanelColours(const ThemeColours& from, ColourSchemes& to);

}  // namespace quorl
