// Numbers in the font of figures, drawn without laying text out: they change with every block.
#pragma once

#include <QRawFont>
#include <QString>

class QPainter;

namespace quorl {

// Every figure is as wide as the next, so that a text's width is its length and its glyphs stand side by
// side.
class DrawnNumber {
 public:
  // `pixels` is the height of the font.
  explicit DrawnNumber(int pixels);

  double Width(const QString& text) const { return advance_ * static_cast<double>(text.size()); }
  // In the painter's pen, from `left`, in the middle of a line of that height.
  void Draw(QPainter& painter, double left, double lineHeight, const QString& text) const;

 private:
  int pixels_;
  QRawFont font_;
  double advance_ = 0, ascent_ = 0, height_ = 0;
};

}  // namespace quorl
