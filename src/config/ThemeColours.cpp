#include "config/ThemeColours.h"

#include <utility>

namespace quorl {

namespace {

constexpr std::pair<Swatch, Colour ColourSchemes::*> kPanel[] = {
    {Swatch::Background, &ColourSchemes::SDRBackgroundColour},
    {Swatch::FrameFocus, &ColourSchemes::SDRFrameFocusColour},
    {Swatch::FrameNormal, &ColourSchemes::SDRFrameNormalColour},
    {Swatch::Label, &ColourSchemes::SDRLabelColour},
    {Swatch::Tuning, &ColourSchemes::SDRTuningColour},
    {Swatch::NormalScrollLabel, &ColourSchemes::ScrollableLabelNormalColour},
    {Swatch::FocusScrollLabel, &ColourSchemes::ScrollableLabelFocusColour},
};

}  // namespace

void TakePanelColours(const ColourSchemes& from, ThemeColours& to) {
  for (const auto& [swatch, field] : kPanel) to[swatch] = from.*field;
}

void GivePanelColours(const ThemeColours& from, ColourSchemes& to) {
  for (const auto& [swatch, field] : kPanel) to.*field = from[swatch];
}

}  // namespace quorl
