// The window over the radio's own panel, whose log is kept, for tests of what is bound to what.
#pragma once

#include <QTest>
#include <QWheelEvent>
#include <string>
#include <vector>

#include "DesktopTest.h"
#include "desktop/window/PanelWindow.h"

namespace quorl {

class BindingRig : public DesktopTest {
 protected:
  QWidget* Named(const char* name) { return window.findChild<QWidget*>(name); }
  void Wheel(QWidget* widget, int eighths, Qt::KeyboardModifiers with = Qt::NoModifier) {
    const QPointF middle = QRectF(widget->rect()).center();
    QWheelEvent event(middle, widget->mapToGlobal(middle), QPoint(), QPoint(0, eighths), Qt::NoButton, with,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
  }
  void Open() {
    window.show();
    Settle();
  }

  RealPanel panel;
  std::vector<std::string> log;
  PanelWindow window{panel.Registry(), {[this](const std::string& line) { log.push_back(line); }, {}}};
};

}  // namespace quorl
