#include "desktop/views/LampView.h"

#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

LampView::LampView(RefreshClock& clock, Picture& lamp) : View(clock, lamp) {
  SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void LampView::paintEvent(QPaintEvent*) {
  constexpr double kRadius = 3, kGlow = 5;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QPointF middle = QRectF(rect()).center();
  const QColor light = Tones().Over();
  painter.setBrush(skin::Faded(light, 0.35));
  painter.drawEllipse(middle, kGlow, kGlow);
  painter.setBrush(light);
  painter.drawEllipse(middle, kRadius, kRadius);
}

}  // namespace quorl
