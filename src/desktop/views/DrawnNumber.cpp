#include "desktop/views/DrawnNumber.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

DrawnNumber::DrawnNumber(int pixels) : pixels_(pixels) {
  const QFont font = skin::NumberFont(pixels);
  const QFontMetricsF metrics(font);
  font_ = QRawFont::fromFont(font);
  advance_ = metrics.horizontalAdvance('0');
  ascent_ = metrics.ascent();
  height_ = metrics.height();
}

void DrawnNumber::Draw(QPainter& painter, double left, double lineHeight, const QString& text) const {
  const QPointF base(left, (lineHeight - height_) / 2 + ascent_);
  const QList<quint32> glyphs = font_.glyphIndexesForString(text);
  if (glyphs.size() != text.size() || glyphs.contains(0)) {
    // Letters that this font doesn't have.
    painter.setFont(skin::NumberFont(pixels_));
    painter.drawText(base, text);
    return;
  }
  QList<QPointF> places;
  places.reserve(glyphs.size());
  for (qsizetype i = 0; i < glyphs.size(); ++i) places.append({advance_ * static_cast<double>(i), 0});
  QGlyphRun run;
  run.setRawFont(font_);
  run.setGlyphIndexes(glyphs);
  run.setPositions(places);
  painter.drawGlyphRun(base, run);
}

}  // namespace quorl
