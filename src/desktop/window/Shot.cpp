#include "desktop/window/Shot.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QWidget>
#include <cmath>

#include "desktop/views/ScopeView.h"
#include "desktop/window/FormWindow.h"
#include "desktop/window/PanelWindow.h"
#include "desktop/window/SidePanels.h"

namespace quorl {

bool GrabShot(QWidget& window, const std::string& path, double scale) {
  if (scale <= 0) return false;
  window.ensurePolished();
  // What its controls hold now, also where the program's clock is not the one that the views follow.
  if (auto* panel = dynamic_cast<PanelWindow*>(window.window())) panel->Clock().Flush();
  if (auto* log = dynamic_cast<LogWindow*>(window.window())) log->Clock().Flush();
  if (auto* form = dynamic_cast<FormWindow*>(window.window())) form->Clock().Flush();
  // What that has moved, and what makes room for it.
  for (int pass = 0; pass < 2; ++pass) QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  const QList<QWidget*> widgets = window.findChildren<QWidget*>() << &window;
  const auto setRatio = [&widgets](double ratio) {
    for (QWidget* widget : widgets) {
      if (auto* scope = dynamic_cast<ScopeView*>(widget)) scope->SetRatio(ratio);
    }
  };
  setRatio(scale);
  const QSize pixels(static_cast<int>(std::lround(window.width() * scale)),
                     static_cast<int>(std::lround(window.height() * scale)));
  QPixmap picture(pixels);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::black);
  window.render(&picture);
  setRatio(0);
  return picture.save(QString::fromStdString(path), "PNG");
}

QWidget* FindPanel(const std::string& name) {
  for (QWidget* widget : QApplication::allWidgets()) {
    if (widget->objectName().compare(QString::fromStdString(name), Qt::CaseInsensitive) == 0) return widget;
  }
  return nullptr;
}

}  // namespace quorl
