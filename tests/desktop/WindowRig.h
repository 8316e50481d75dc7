// The window over the radio's own panel.
#pragma once

#include <QAccessible>
#include <QTest>
#include <vector>

#include "DesktopTest.h"
#include "desktop/window/PanelWindow.h"

namespace quorl {

class WindowRig : public DesktopTest {
 protected:
  // Counts the paint events of the window and all in it.
  class PaintCounter : public QObject {
   public:
    explicit PaintCounter(QWidget& window) {
      window.installEventFilter(this);
      for (QWidget* widget : window.findChildren<QWidget*>()) widget->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Paint) ++Paints;
      return false;
    }
    int Paints = 0;
  };

  QAccessibleInterface& Access(const char* name) {
    auto* widget = window.findChild<QWidget*>(name);
    if (!widget) throw std::logic_error(name);
    return *QAccessible::queryAccessibleInterface(widget);
  }
  QString Spoken(const char* name, QAccessible::Text kind) { return Access(name).text(kind); }
  // Whether the name spells out the unit that the value ends in.
  static bool SaysUnitTwice(const View& view) {
    constexpr std::pair<const char*, const char*> kUnits[] = {
        {" Hz", "hertz"}, {" dB", "decibel"}, {" %", "percent"}, {" s", "second"}, {" ms", "second"}};
    return std::any_of(std::begin(kUnits), std::end(kUnits), [&view](const auto& unit) {
      return view.SpokenValue().endsWith(unit.first) && view.SpokenName().contains(unit.second);
    });
  }
  static void Pass(int milliseconds) { QTest::qWait(milliseconds); }

  RealPanel panel;
  std::vector<bool> seen;
  std::vector<QSize> sizes;
  PanelWindow window{panel.Registry(),
                     {.Seen = [this](bool is) { seen.push_back(is); },
                      .Sized =
                          [this](int width, int height) {
                            sizes.push_back({width, height});
                          }}};
};

}  // namespace quorl
