// The panel's large figures, drawn as one line of even width with round ends.
#pragma once

#include <QColor>
#include <QHash>
#include <QPainterPath>
#include <QPixmap>

namespace quorl {

// The middle line of figure '0' to '9' or of '-', in a box `height` high and kNumeralWidth times as wide;
// empty for any other character.
QPainterPath NumeralLine(QChar figure, double height);
constexpr double kNumeralWidth = 0.50;
constexpr double kNumeralStroke = 0.115;  // of the height

// Figures ready to be drawn, each with its glow.
class NumeralCache {
 public:
  // `margin` is what the glow needs around the figure's box, in device-independent pixels.
  const QPixmap& Get(QChar figure, const QColor& ink, double height, bool glowing, double ratio);
  static double Margin(double height) { return height * 0.14; }

 private:
  QHash<QString, QPixmap> pixmaps_;
};

}  // namespace quorl
