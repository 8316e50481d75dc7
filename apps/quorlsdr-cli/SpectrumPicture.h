// The picture of a measured spectrum: mean and peaks, below them the waterfall, with scales.
#pragma once

#include <string>

#include "SpectrumMeter.h"
#include "display/canvas/RasterCanvas.h"

namespace quorl::cli {

// Of a stretch that begins `from` seconds after the recording. At least one block has been measured.
RasterCanvas DrawSpectrum(const SpectrumMeter& meter, const std::string& title, double from);

}  // namespace quorl::cli
