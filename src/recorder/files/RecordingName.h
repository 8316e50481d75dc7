// Names of recordings that are made without asking.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Files.h"

namespace quorl {

// Whole kHz, rounded.
std::int64_t WholeKilohertz(std::int32_t dhz);
// "2026-11-23 1805 7205 kHz". `when` counts days as DaysOf does.
std::string RecordingName(double when, std::int32_t dhz);
// The path of `name` + `ending` in `folder`; where that is taken, of `name` + " (2)" + `ending`, and so on.
std::string FreePath(const Files& files, const std::string& folder, const std::string& name,
                     const std::string& ending);

}  // namespace quorl
