#include "desktop/window/IdleScope.h"

#include <QPainter>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

IdleScope::IdleScope() {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAccessibleName("Scope");
}

void IdleScope::paintEvent(QPaintEvent*) {
  constexpr int kColumns = 12, kRows = 10;
  QPainter painter(this);
  painter.fillRect(rect(), QColor(0xFF080B0D));
  const double ratio = devicePixelRatioF();
  const auto snapped = [ratio](double x) { return (std::floor(x * ratio) + 0.5) / ratio; };
  for (int i = 1; i < kColumns; ++i) {
    painter.setPen(QPen(QColor(i == kColumns / 2 ? 0xFF1C2A2A : 0xFF131A1C), 1 / ratio));
    const double x = snapped(i * double(width()) / kColumns);
    painter.drawLine(QPointF(x, 0), QPointF(x, height()));
  }
  for (int i = 1; i < kRows; ++i) {
    painter.setPen(QPen(QColor(i == kRows / 2 ? 0xFF1C2A2A : 0xFF131A1C), 1 / ratio));
    const double y = snapped(i * double(height()) / kRows);
    painter.drawLine(QPointF(0, y), QPointF(width(), y));
  }
}

}  // namespace quorl
