// What controls are called by a screen reader where caption and tool tip don't say it.
#pragma once

#include "controls/ControlRegistry.h"

namespace quorl {

// Names the controls that are in the registry by now; a name that a panel has given stays.
void NameControls(const ControlRegistry& registry);

}  // namespace quorl
