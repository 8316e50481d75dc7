// Inks that say more than a label's own colour: the same on every page and in every theme, which see to the
// contrast.
#pragma once

#include "controls/Control.h"

namespace quorl {

constexpr Colour kWrongInk = 0x0000FF;    // red: what was typed can't be taken
constexpr Colour kCautionInk = 0x38A8FF;  // amber: it works, and something should be known

}  // namespace quorl
