#include "desktop/views/TextStamps.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kPixels = 11;
constexpr std::size_t kMost = 512;  // names, marks and scales of a picture that moves
constexpr double kSeamOpacity = 0.85;

QString Decoded(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Stands out from the seam, on a light ground as on a dark one.
QColor LetterInk(const QColor& ink, const QColor& ground) {
  if (skin::Contrast(ground, Qt::white) > skin::Contrast(ground, Qt::black))
    return skin::Readable(ink, ground, skin::kTitleContrast);
  return skin::Contrast(ink, ground) < skin::kTitleContrast ? QColor(Qt::black) : ink;
}

}  // namespace

TextStamps::TextStamps() : font_(skin::WordFont(kPixels)), ground_(QColor(skin::kScopeGround)) {
  const QFontMetricsF metrics(font_);
  height_ = static_cast<int>(std::ceil(metrics.height()));
  ascent_ = metrics.ascent();
}

void TextStamps::SetRatio(double ratio) {
  if (ratio == ratio_) return;
  ratio_ = ratio;
  stamps_.clear();
}

int TextStamps::Width(std::string_view text) {
  const QImage& stamp = Get(text, Qt::white);
  return static_cast<int>(std::lround(stamp.width() / ratio_)) - 2 * kSeam;
}

const QImage& TextStamps::Get(std::string_view text, const QColor& ink) {
  const auto found = stamps_.find(Asked{text, ink.rgb(), ground_.rgb()});
  if (found != stamps_.end()) return found->second;
  if (stamps_.size() >= kMost) stamps_.clear();
  return stamps_
      .emplace(Key{std::string(text), ink.rgb(), ground_.rgb()}, Draw(Decoded(text), LetterInk(ink, ground_)))
      .first->second;
}

QImage TextStamps::Draw(const QString& text, const QColor& ink) const {
  const int width = skin::TextWidth(font_, text) + 2 * kSeam;
  const int height = height_ + 2 * kSeam;
  QImage stamp(static_cast<int>(std::ceil(width * ratio_)), static_cast<int>(std::ceil(height * ratio_)),
               QImage::Format_ARGB32_Premultiplied);
  stamp.fill(Qt::transparent);
  QPainter painter(&stamp);
  painter.scale(ratio_, ratio_);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPointF base(kSeam, kSeam + ascent_);
  QPainterPath letters;
  letters.addText(base, font_, text);
  painter.strokePath(letters, QPen(skin::Faded(ground_, kSeamOpacity), 2 * kSeam, Qt::SolidLine, Qt::RoundCap,
                                   Qt::RoundJoin));
  painter.setFont(font_);
  painter.setPen(ink);
  painter.drawText(base, text);
  painter.end();
  return stamp.copy();  // without what the painter has left in it, which is several times the picture
}

}  // namespace quorl
