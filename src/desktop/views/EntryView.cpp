#include "desktop/views/EntryView.h"

#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QToolTip>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kPixels = 40;

}  // namespace

EntryView::EntryView(RefreshClock& clock, TextBox& text, QWidget* anchor)
    : TextView(clock, text, anchor->width()), anchor_(anchor) {
  setParent(anchor->window());
  SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed, false);
  SetPrompt();
  Line().setFont(skin::NumberFont(kPixels));
  Line().setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  Line().installEventFilter(this);
  hide();
}

void EntryView::TakeOver() {
  if (anchor_ && parentWidget() != anchor_->window()) setParent(anchor_->window());
  const bool comes = Shown().Visible() && isHidden();
  if (comes) before_ = window()->focusWidget();
  // What is about to be hidden would hand the keyboard to any neighbour.
  if (!Shown().Visible() && Line().hasFocus()) {
    QWidget* after = before_ && before_->isVisible() ? before_.data() : window();
    after->setFocus(Qt::OtherFocusReason);
  }
  TextView::TakeOver();
  if (!Shown().Visible() || !anchor_) {
    hide();
    return;
  }
  setGeometry(QRect(anchor_->mapTo(anchor_->window(), QPoint(0, 0)), anchor_->size()));
  if (comes) Come();
  if (toolTip() == told_) return;
  told_ = toolTip();
  if (told_.isEmpty()) {
    QToolTip::hideText();
  } else {
    QToolTip::showText(mapToGlobal(QPoint(0, height())), told_, this);
  }
}

void EntryView::Come() {
  show();
  raise();
  Line().setFocus(Qt::OtherFocusReason);
  Line().end(false);
}

bool EntryView::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::FocusOut || !Shown().Visible()) return false;
  const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
  if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) Raise(Shown().LostFocus);
  return false;
}

}  // namespace quorl
