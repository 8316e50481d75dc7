// The level of a sound input and the test tone of an output, as dialogs have them among their rows.
#pragma once

#include <string>

#include "desktop/views/Binder.h"
#include "desktop/window/FormPage.h"

namespace quorl {

// Rows of both devices: `input` and `output` are the names of their boxes in `dialog`.
void AddSoundRows(Binder& bind, FormPage& page, const std::string& dialog, const QString& input,
                  const QString& output);

}  // namespace quorl
