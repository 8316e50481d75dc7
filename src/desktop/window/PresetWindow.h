// The dialog that edits a preset (frmEditUserPreset).
#pragma once

#include <QWidget>

#include "desktop/views/Binder.h"

namespace quorl {

// It is shown while the control frmEditUserPreset is visible, and keeps everything else waiting. Outlived by
// the registry.
class PresetWindow : public QWidget {
 public:
  PresetWindow(const ControlRegistry& registry, Binder::Logger log);
  ~PresetWindow() override;

  RefreshClock& Clock() { return clock_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Build();
  void Follow();

  RefreshClock clock_;
  Binder bind_;
  Frame* form_;
  CommandButton* cancel_;
  Listening following_;
};

}  // namespace quorl
