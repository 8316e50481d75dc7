#include "desktop/views/SwatchView.h"

#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

SwatchView::SwatchView(RefreshClock& clock, Picture& swatch) : View(clock, swatch) {
  SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setCursor(Qt::PointingHandCursor);
}

void SwatchView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const Colour colour = Shown().BackColour();
  painter.setPen(QPen(Tones().Edge(), 1));
  painter.setBrush(colour == kNoColour ? Tones().Face() : skin::PlainColourOf(colour));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), skin::kRadius, skin::kRadius);
}

}  // namespace quorl
