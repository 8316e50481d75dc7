// What the Qt application needs before its first window.
#pragma once

#include "config/ColourSchemes.h"

namespace quorl {

// Fonts, colours and style of the panel for all windows and boxes of the application that stands, and the way
// in for screen readers.
void PrepareApplication();

// All windows and boxes in these colours, those that are open, with the next events, and those to come.
// Nothing where they are in them already.
void ApplyColours(const ColourSchemes& colours);

}  // namespace quorl
