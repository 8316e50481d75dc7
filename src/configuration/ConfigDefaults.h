// What a first start puts into the settings.
#pragma once

#include "config/SettingsStore.h"

namespace quorl {

// Keys that tune wherever the pointer is: who doesn't want them says so once.
void PutConfigDefaults(SettingsStore& store);

}  // namespace quorl
