// The colours of the panel that a user can choose, and the two that tell a pressed button from the others.
#pragma once

#include <array>

#include "config/SettingsTable.h"
#include "controls/Control.h"

namespace quorl {

// Ground of a button that is chosen or switched on, and of one that isn't.
inline constexpr Colour kSelectedColour = 0xFFFF00;
inline constexpr Colour kUnselectedColour = 0xC0C000;

// A colour of its parts, 0 to 255 each.
constexpr Colour ColourOf(Colour red, Colour green, Colour blue) {
  return red | green << 8 | blue << 16;
}

// The seven panel colours. Made with the night theme.
struct ColourSchemes {
  Colour SDRBackgroundColour;
  Colour SDRLabelColour;
  Colour SDRTuningColour;
  Colour SDRFrameNormalColour;
  Colour SDRFrameFocusColour;
  Colour ScrollableLabelNormalColour;
  Colour ScrollableLabelFocusColour;

  ColourSchemes() { Defaults(); }
  // Back to the night theme.
  void Defaults();
  void AddSettings(SettingsTable& table);
};

// The settings keys of the colours, in the order in which they are read.
struct ColourSetting {
  const char* Key;
  Colour ColourSchemes::*Field;
};
inline constexpr std::array<ColourSetting, 7> kColourSettings{{
    {"SDRBackgroundColour", &ColourSchemes::SDRBackgroundColour},
    {"SDRLabelColour", &ColourSchemes::SDRLabelColour},
    {"SDRTuningColour", &ColourSchemes::SDRTuningColour},
    {"SDRFrameNormalColour", &ColourSchemes::SDRFrameNormalColour},
    {"SDRFrameFocusColour", &ColourSchemes::SDRFrameFocusColour},
    {"ScrollableLabelNormalColour", &ColourSchemes::ScrollableLabelNormalColour},
    {"ScrollableLabelFocusColour", &ColourSchemes::ScrollableLabelFocusColour},
}};

}  // namespace quorl
