#include "desktop/views/AdviceView.h"

#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kLineHeight = 16, kWidth = 320;

}  // namespace

AdviceView::AdviceView(RefreshClock& clock, Label& label, int lines)
    : View(clock, label), label_(label), lines_(lines) {
  SetSizes(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize AdviceView::sizeHint() const {
  return {kWidth, lines_ * kLineHeight};
}

void AdviceView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(skin::WordFont());
  const QColor ink = Tones().Text(label_.ForeColour(), Tones().Quiet());
  painter.setPen(LooksOff() ? skin::SwitchedOff(ink, Tones().Card()) : ink);
  painter.drawText(rect(), static_cast<int>(Qt::AlignLeft | down_) | Qt::TextWordWrap, Words());
}

}  // namespace quorl
