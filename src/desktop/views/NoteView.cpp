#include "desktop/views/NoteView.h"

#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kMilliseconds = 6000, kPixels = 12, kMargin = 8;

}  // namespace

NoteView::NoteView(RefreshClock& clock, Label& label, QWidget* anchor)
    : View(clock, label, anchor->window()), label_(label), anchor_(anchor) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  rest_.setSingleShot(true);
  rest_.callOnTimeout([this] { hide(); });
  hide();
}

void NoteView::TakeOver() {
  if (!label_.Visible() || !anchor_) {
    hide();
    return;
  }
  if (parentWidget() != anchor_->window()) setParent(anchor_->window());
  const bool comes = !isVisible();
  resize(sizeHint());
  move(anchor_->mapTo(anchor_->window(), QPoint(0, anchor_->height())));
  show();
  raise();
  update();
  rest_.start(kMilliseconds);
  if (!comes) return;
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

QSize NoteView::sizeHint() const {
  const QFontMetrics metrics(skin::WordFont(kPixels));
  return {metrics.horizontalAdvance(Words()) + 2 * kMargin, metrics.height() + kMargin};
}

void NoteView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Tones().Edge(), 1));
  painter.setBrush(Tones().Face());
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), skin::kRadius, skin::kRadius);
  painter.setFont(skin::WordFont(kPixels));
  painter.setPen(Tones().Ink());
  painter.drawText(rect(), Qt::AlignCenter, Words());
}

}  // namespace quorl
