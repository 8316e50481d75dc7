#include "desktop/views/Numerals.h"

#include <QPainter>
#include <array>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

// A six; a nine is a six turned by half a turn.
void AddSix(QPainterPath& path, double w, double h) {
  path.addEllipse(QRectF(0, 0.40 * h, w, 0.60 * h));
  path.moveTo(0.80 * w, 0);
  path.cubicTo(0.38 * w, 0.14 * h, 0, 0.40 * h, 0, 0.70 * h);
}

void AddFigure(QPainterPath& path, QChar figure, double w, double h) {
  switch (figure.unicode()) {
    case '0':
      path.addRoundedRect(QRectF(0, 0, w, h), w / 2, 0.46 * w);
      break;
    case '1':
      path.moveTo(0.16 * w, 0.17 * h);
      path.lineTo(0.58 * w, 0);
      path.lineTo(0.58 * w, h);
      break;
    case '2':
      path.moveTo(0, 0.27 * h);
      path.arcTo(QRectF(0, 0, w, 0.56 * h), 180, -200);
      path.cubicTo(0.86 * w, 0.52 * h, 0.25 * w, 0.76 * h, 0, h);
      path.lineTo(w, h);
      break;
    case '3':
      path.moveTo(0.04 * w, 0);
      path.lineTo(0.94 * w, 0);
      path.lineTo(0.46 * w, 0.40 * h);
      path.arcTo(QRectF(0, 0.40 * h, w, 0.60 * h), 94, -252);
      break;
    case '4':
      path.moveTo(0.66 * w, 0);
      path.lineTo(0, 0.72 * h);
      path.lineTo(w, 0.72 * h);
      path.moveTo(0.76 * w, 0.46 * h);
      path.lineTo(0.76 * w, h);
      break;
    case '5':
      path.moveTo(0.92 * w, 0);
      path.lineTo(0.14 * w, 0);
      path.lineTo(0.06 * w, 0.46 * h);
      path.arcTo(QRectF(0, 0.36 * h, w, 0.64 * h), 140, -298);
      break;
    case '6':
      AddSix(path, w, h);
      break;
    case '7':
      path.moveTo(0, 0);
      path.lineTo(w, 0);
      path.lineTo(0.34 * w, h);
      break;
    case '8':
      path.addEllipse(QRectF(0.07 * w, 0, 0.86 * w, 0.45 * h));
      path.addEllipse(QRectF(0, 0.45 * h, w, 0.55 * h));
      break;
    case '9': {
      QPainterPath six;
      AddSix(six, w, h);
      path.addPath(QTransform().translate(w, h).rotate(180).map(six));
      break;
    }
    case '-':
      path.moveTo(0.15 * w, 0.52 * h);
      path.lineTo(0.85 * w, 0.52 * h);
      break;
    default:
      break;
  }
}

}  // namespace

QPainterPath NumeralLine(QChar figure, double height) {
  const double inset = kNumeralStroke * height / 2;
  QPainterPath path;
  AddFigure(path, figure, kNumeralWidth * height - 2 * inset, height - 2 * inset);
  return path.translated(inset, inset);
}

const QPixmap& NumeralCache::Get(QChar figure, const QColor& ink, double height, bool glowing, double ratio) {
  constexpr int kMostKept = 128;
  const QString key =
      QStringLiteral("%1 %2 %3 %4 %5").arg(figure).arg(ink.rgba()).arg(height).arg(glowing).arg(ratio);
  if (const auto found = pixmaps_.constFind(key); found != pixmaps_.cend()) return *found;
  if (pixmaps_.size() >= kMostKept) pixmaps_.clear();

  const double margin = Margin(height);
  const QSizeF size(kNumeralWidth * height + 2 * margin, height + 2 * margin);
  QPixmap pixmap((size * ratio).toSize() + QSize(1, 1));
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(margin, margin);
  const QPainterPath line = NumeralLine(figure, height);
  const double stroke = kNumeralStroke * height;
  const auto draw = [&](double width, double opacity) {
    painter.setPen(QPen(skin::Faded(ink, opacity), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(line);
  };
  if (glowing) {
    constexpr int kRings = 9;
    for (int i = kRings; i > 0; --i) draw(stroke + margin * 1.8 * i / kRings, 0.022);
  }
  draw(stroke, ink.alphaF());
  if (glowing) {
    const QColor core = skin::Mixed(ink, Qt::white, 0.28);
    painter.setPen(QPen(skin::Faded(core, 0.55), stroke * 0.34, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(line);
  }
  return *pixmaps_.insert(key, pixmap);
}

}  // namespace quorl
