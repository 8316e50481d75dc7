// The log as a panel: its lines, the last one in view.
#pragma once

#include "controls/Controls.h"
#include "diagnostics/LogBook.h"

namespace quorl {

class LogPanel {
 public:
  // Shows what the log holds and follows it until the panel goes. `log` is used as long as the panel lives.
  LogPanel(ControlRegistry& registry, LogBook& log);

  Frame frmLog;  // hidden to begin with
  ListBox lstLog;

 private:
  Listening following_;
};

}  // namespace quorl
