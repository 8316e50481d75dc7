#include "desktop/views/LoudspeakerView.h"

#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

void LoudspeakerView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool muted = IsChecked();
  const skin::Tones tones = Tones();
  const QColor ink = muted ? tones.Strong() : IsHovered() ? tones.Accent() : tones.Neutral();
  if (IsHovered() || muted) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(skin::Mixed(tones.Card(), ink, 0.14));
    painter.drawRoundedRect(rect(), skin::kRadius, skin::kRadius);
  }
  const QPointF middle = QRectF(rect()).center();
  const QPointF box = middle - QPointF(4, 0);
  const QPointF body[] = {box + QPointF(-6, -3), box + QPointF(-3, -3), box + QPointF(2, -7),
                          box + QPointF(2, 7),   box + QPointF(-3, 3),  box + QPointF(-6, 3)};
  painter.setPen(QPen(ink, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(ink);
  painter.drawPolygon(body, static_cast<int>(std::size(body)));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap));
  if (muted) {
    const QPointF cross = middle + QPointF(6, 0);
    painter.drawLine(cross + QPointF(-3.5, -3.5), cross + QPointF(3.5, 3.5));
    painter.drawLine(cross + QPointF(-3.5, 3.5), cross + QPointF(3.5, -3.5));
    return;
  }
  for (const double radius : {5.0, 9.0}) {
    painter.drawArc(QRectF(box.x() + 2 - radius, box.y() - radius, 2 * radius, 2 * radius), -45 * 16,
                    90 * 16);
  }
}

}  // namespace quorl
