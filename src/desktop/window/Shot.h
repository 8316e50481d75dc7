// Pictures of a window, for scripts and for the documentation.
#pragma once

#include <string>

class QWidget;

namespace quorl {

// Renders the window, shown or not, into a PNG file at `scale` device pixels a pixel (> 0). False where the
// file can't be written.
bool GrabShot(QWidget& window, const std::string& path, double scale = 1.0);

}  // namespace quorl
