#include "desktop/views/FocusRing.h"

#include <QApplication>
#include <QFocusEvent>
#include <QPainter>

#include "desktop/views/Skin.h"
#include "desktop/views/View.h"

namespace quorl {

namespace {

constexpr int kOutside = 3, kWidth = 2;

bool IsFromKeyboard(Qt::FocusReason reason) {
  return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
         reason == Qt::ShortcutFocusReason;
}

}  // namespace

FocusRing::FocusRing(QWidget* window) : QWidget(window) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
  hide();
  qApp->installEventFilter(this);
}

bool FocusRing::eventFilter(QObject* object, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type == QEvent::FocusIn || type == QEvent::FocusOut) {
    auto* widget = qobject_cast<QWidget*>(object);
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (!widget || widget->window() != window() || reason == Qt::ActiveWindowFocusReason) return false;
    Surround(type == QEvent::FocusIn && byKeyboard_ && IsFromKeyboard(reason) ? widget : nullptr);
  } else if (type == QEvent::KeyPress || type == QEvent::MouseButtonPress) {
    // A control that hides hands its focus on for the same reason that a Tab key would give.
    byKeyboard_ = type == QEvent::KeyPress;
  } else if ((type == QEvent::Move || type == QEvent::Resize) && around_ && object->isWidgetType()) {
    // What holds it moves it along.
    const auto* moved = static_cast<const QWidget*>(object);
    if (moved == around_ || moved->isAncestorOf(around_)) Surround(around_);
  }
  return false;
}

void FocusRing::Surround(QWidget* widget) {
  around_ = widget;
  setVisible(widget != nullptr);
  if (!widget) return;
  const QPoint corner = widget->mapTo(window(), QPoint(0, 0));
  setGeometry(QRect(corner, widget->size()).adjusted(-kOutside, -kOutside, kOutside, kOutside));
  raise();
}

void FocusRing::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(skin::Tones(palette()).Accent(), kWidth));
  const double inset = kWidth / 2.0;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), 6, 6);
}

}  // namespace quorl
