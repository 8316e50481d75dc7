// What the Qt application needs before its first window.
#pragma once

#include "config/ColourSchemes.h"

class QApplication;

namespace quorl {

// Fonts, colours and style of the panel for all windows and boxes, and the way in for screen readers.
void PrepareApplication(QApplication& application);

// All windows and boxes in these colours, those that are open and those to come. Nothing where they are in
// them already.
void ApplyColours(const ColourSchemes& colours);

}  // namespace quorl
