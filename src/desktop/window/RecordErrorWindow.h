// What the recorder has to tell of a file, in a window that leaves the panel alone.
#pragma once

#include <QWidget>

#include "desktop/views/Binder.h"

namespace quorl {

// Shown while the control frmRecordFileError is visible. Outlived by the registry.
class RecordErrorWindow : public QWidget {
 public:
  RecordErrorWindow(const ControlRegistry& registry, Binder::Logger log);
  ~RecordErrorWindow() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Follow();

  RefreshClock clock_;
  Binder bind_;
  Frame* form_;
  Listening following_, reading_;
};

}  // namespace quorl
