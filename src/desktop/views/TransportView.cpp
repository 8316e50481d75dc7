#include "desktop/views/TransportView.h"

#include <QPainter>
#include <QPainterPath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

// All signs stand around the origin, at most 7 to each side.
QPainterPath Triangle(double left, double right, double half) {
  QPainterPath path;
  path.moveTo(left, -half);
  path.lineTo(right, 0);
  path.lineTo(left, half);
  path.closeSubpath();
  return path;
}

QPainterPath Bar(double x, double y, double width, double height) {
  QPainterPath path;
  path.addRoundedRect(x, y, width, height, 0.8, 0.8);
  return path;
}

QPainterPath Filled(TransportSign sign) {
  QPainterPath path;
  switch (sign) {
    case TransportSign::Record:
      path.addEllipse(QPointF(0, 0), 5.5, 5.5);
      break;
    case TransportSign::Play:
      path = Triangle(-4, 6, 6);
      break;
    case TransportSign::Pause:
      path = Bar(-5, -5.5, 3.5, 11);
      path.addPath(Bar(1.5, -5.5, 3.5, 11));
      break;
    case TransportSign::Stop:
      path = Bar(-5, -5, 10, 10);
      break;
    case TransportSign::Previous:
      path = Bar(-6, -5.5, 2, 11);
      path.addPath(Triangle(6, -3.5, 5.5));
      break;
    case TransportSign::Next:
      path = Triangle(-6, 3.5, 5.5);
      path.addPath(Bar(4, -5.5, 2, 11));
      break;
    default:
      break;
  }
  return path;
}

QPainterPath Drawn(TransportSign sign) {
  QPainterPath path;
  switch (sign) {
    case TransportSign::Loop:
      path.arcMoveTo(-5.5, -5.5, 11, 11, 60);
      path.arcTo(-5.5, -5.5, 11, 11, 60, -310);
      path.moveTo(-0.5, -7.5);
      path.lineTo(3.2, -4.6);
      path.lineTo(-0.6, -2.2);
      break;
    case TransportSign::Load:  // a folder
      path.moveTo(-6.5, 5);
      path.lineTo(-6.5, -5);
      path.lineTo(-2, -5);
      path.lineTo(-0.5, -3);
      path.lineTo(6.5, -3);
      path.lineTo(6.5, 5);
      path.closeSubpath();
      break;
    case TransportSign::Save:  // down into the box
      path.moveTo(0, -6.5);
      path.lineTo(0, 2);
      path.moveTo(-3.5, -1);
      path.lineTo(0, 2.5);
      path.lineTo(3.5, -1);
      path.moveTo(-6, 2);
      path.lineTo(-6, 6);
      path.lineTo(6, 6);
      path.lineTo(6, 2);
      break;
    case TransportSign::Close:
      path.moveTo(-4.5, -4.5);
      path.lineTo(4.5, 4.5);
      path.moveTo(-4.5, 4.5);
      path.lineTo(4.5, -4.5);
      break;
    default:
      break;
  }
  return path;
}

}  // namespace

TransportView::TransportView(RefreshClock& clock, LatchButton& button, TransportSign sign)
    : FaceView(clock, button), button_(button), sign_(sign) {
  SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QString TransportView::SpokenValue() const {
  return IsChecked() ? QStringLiteral("on") : QString();
}

void TransportView::DrawSign(QPainter& painter, const QColor& ink) const {
  painter.translate(QRectF(rect()).center());
  painter.setPen(Qt::NoPen);
  painter.setBrush(ink);
  painter.drawPath(Filled(sign_));
  painter.setPen(QPen(ink, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(Drawn(sign_));
}

// Red is the sign of what records; a button that is down is filled, red where its panel says so.
void TransportView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool records = sign_ == TransportSign::Record, down = IsChecked();
  const skin::Tones tones = Tones();
  const QColor hue = records                             ? tones.Over()
                     : Shown().BackColour() != kNoColour ? skin::ColourOf(Shown().BackColour())
                                                         : tones.Accent();
  const skin::ButtonLook look =
      skin::LookOf(tones, hue, {.On = down, .Hovered = IsHovered(), .Pressed = IsPressed()});
  painter.setPen(QPen(look.Edge, 1));
  painter.setBrush(look.Face);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), skin::kRadius, skin::kRadius);
  const QColor ink = records && !down ? skin::Readable(hue, look.Face, skin::kOffContrast) : look.Ink;
  DrawSign(painter, LooksOff() ? skin::SwitchedOff(ink, look.Face) : ink);
}

}  // namespace quorl
