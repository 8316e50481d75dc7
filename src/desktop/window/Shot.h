// Pictures of a window, for scripts and for the documentation.
#pragma once

#include <string>

class QWidget;

namespace quorl {

// Renders the window, or a view in one, shown or not, into a PNG file at `scale` device pixels a pixel (> 0).
// False where the file can't be written.
bool GrabShot(QWidget& window, const std::string& path, double scale = 1.0);

// The widget of that name, whatever its letter case: a window of the program, or a view in one of them. Null
// where there is none.
QWidget* FindPanel(const std::string& name);

}  // namespace quorl
