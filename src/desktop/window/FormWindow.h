// A window beside the panel that comes and goes with a frame of controls.
#pragma once

#include <QWidget>
#include <string>

#include "desktop/views/Binder.h"

namespace quorl {

// It is shown while its frame is visible; the frame gets Enter and Escape, and a window that is closed is
// told as Escape. Outlived by the registry.
class FormWindow : public QWidget {
 public:
  FormWindow(const ControlRegistry& registry, Binder::Logger log, const std::string& form);
  ~FormWindow() override;

  RefreshClock& Clock() { return clock_; }

 protected:
  // Follows the frame from now on; called when the window's rows are there.
  void Begin();
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

  RefreshClock clock_;
  Binder bind_;
  Frame* form_;

 private:
  void Follow();

  Listening following_;
};

}  // namespace quorl
