// The tuning steps in words.
#pragma once

#include <array>
#include <string>

#include "state/PublicConstants.h"

namespace quorl {

// "10 KHz", "500 Hz", "5 dHz": a text for each entry of TuneSteps.
std::array<std::string, TuneSteps.size()> TuneStepTexts();

}  // namespace quorl
