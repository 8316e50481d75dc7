// The windows of all dialogs, each for its frame of controls.
#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "desktop/views/Binder.h"

namespace quorl {

// They come and go with their frames; outlived by the registry.
std::vector<std::unique_ptr<QWidget>> MakeDialogWindows(const ControlRegistry& registry,
                                                        const Binder::Logger& log);

}  // namespace quorl
