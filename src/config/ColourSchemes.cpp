#include "config/ColourSchemes.h"

namespace quorl {

void ColourSchemes::Defaults() {
  SDRBackgroundColour = 0;
  SDRLabelColour = ColourOf(143, 163, 173);
  SDRTuningColour = 0x0000FF;
  SDRFrameNormalColour = ColourOf(107, 127, 138);
  SDRFrameFocusColour = 0xFFFF00;
  ScrollableLabelNormalColour = ColourOf(232, 238, 241);
  ScrollableLabelFocusColour = 0x0000FF;
}

void ColourSchemes::AddSettings(SettingsTable& table) {
  for (const ColourSetting& colour : kColourSettings) table.AddColour(colour.Key, this->*colour.Field);
}

}  // namespace quorl
