// The small windows beside the main panel: splash and log.
#pragma once

#include <QWidget>
#include <functional>

#include "desktop/views/Binder.h"

namespace quorl {

// What shows while the receiver is being put together (frmSplash1).
class SplashPanel : public QWidget {
 public:
  // Opens it in the middle of the screen and paints it at once, before any event is delivered.
  explicit SplashPanel(const QString& version);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString version_;
};

// The log (frmLog): the lines of lstLog, in a window of its own. It is shown while the control frmLog is
// visible; where there is none, with show(). Outlived by the registry.
class LogWindow : public QWidget {
 public:
  LogWindow(const ControlRegistry& registry, Binder::Logger log);
  ~LogWindow() override;

  RefreshClock& Clock() { return clock_; }
  // Where it is shown: puts it on the screen with the lines so far, before any other event is delivered.
  void PaintNow();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  RefreshClock clock_;
  Binder bind_;
  Control* form_;
  Listening following_;
};

}  // namespace quorl
