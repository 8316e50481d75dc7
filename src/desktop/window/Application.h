// What the Qt application needs before its first window.
#pragma once

class QApplication;

namespace quorl {

// Fonts, colours and style of the panel for all windows and boxes, and the way in for screen readers.
void PrepareApplication(QApplication& application);

}  // namespace quorl
