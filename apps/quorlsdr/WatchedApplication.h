// The Qt application, with a stop watch on what it paints.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <algorithm>
#include <cstdint>

namespace quorl {

class WatchedApplication : public QApplication {
 public:
  using QApplication::QApplication;

  std::int64_t Repaints = 0;  // of windows
  double RepaintMs = 0.0, LongestRepaintMs = 0.0;

  bool notify(QObject* receiver, QEvent* event) override {
    // A window's update request paints all that has changed in it.
    if (event->type() != QEvent::UpdateRequest) return QApplication::notify(receiver, event);
    QElapsedTimer watch;
    watch.start();
    const bool done = QApplication::notify(receiver, event);
    const double ms = static_cast<double>(watch.nsecsElapsed()) / 1e6;
    ++Repaints;
    RepaintMs += ms;
    LongestRepaintMs = std::max(LongestRepaintMs, ms);
    return done;
  }
};

}  // namespace quorl
