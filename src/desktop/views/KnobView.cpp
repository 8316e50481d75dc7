#include "desktop/views/KnobView.h"

#include <QMouseEvent>
#include <QPainter>
#include <cmath>
#include <limits>
#include <numbers>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr double kSweep = 270;   // of a knob with ends, degrees
constexpr double kStart = -135;  // clockwise from the top

QPointF OnCircle(const QPointF& middle, double radius, double degrees) {
  const double radians = degrees * std::numbers::pi / 180;
  return middle + QPointF(radius * std::sin(radians), -radius * std::cos(radians));
}

}  // namespace

KnobView::KnobView(RefreshClock& clock, Dial& dial, int diameter)
    : View(clock, dial), dial_(dial), diameter_(diameter) {
  setFocusPolicy(Qt::StrongFocus);
  SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

std::optional<View::Range> KnobView::SpokenRange() const {
  if (dial_.Bounded()) return Range{double(dial_.Value()), double(dial_.Min()), double(dial_.Max())};
  constexpr double kNoEnd = std::numeric_limits<int>::max();
  return Range{double(dial_.Value()), -kNoEnd, kNoEnd};
}

bool KnobView::OnKey(int code, Modifiers with) {
  const int direction = TurnOf(code);
  return direction != 0 && dial_.UserTurn(direction, with);
}

double KnobView::DegreesAt(const QPointF& point) const {
  const QPointF from = point - QRectF(rect()).center();
  return std::atan2(from.x(), -from.y()) * 180 / std::numbers::pi;
}

void KnobView::mousePressEvent(QMouseEvent* event) {
  lastDegrees_ = DegreesAt(event->position());
  turned_ = 0;
  View::mousePressEvent(event);
}

void KnobView::mouseMoveEvent(QMouseEvent* event) {
  View::mouseMoveEvent(event);
  if (!IsPressed()) return;
  const double degrees = DegreesAt(event->position());
  turned_ += std::remainder(degrees - lastDegrees_, 360.0);
  lastDegrees_ = degrees;
  const double perStep =
      dial_.Bounded() ? kSweep / std::max(1, dial_.Max() - dial_.Min()) : 360.0 / Dial::kStepsPerTurn;
  const double steps = std::trunc(turned_ / perStep);
  if (steps == 0) return;
  turned_ -= steps * perStep;
  dial_.UserStep(static_cast<int>(steps));
}

double KnobView::ShownDegrees() const {
  if (!dial_.Bounded()) return 360.0 * (dial_.Value() % Dial::kStepsPerTurn) / Dial::kStepsPerTurn;
  const double range = std::max(1, dial_.Max() - dial_.Min());
  return kStart + kSweep * (dial_.Value() - dial_.Min()) / range;
}

void KnobView::PaintBody(QPainter& painter) const {
  const QPointF middle = QRectF(rect()).center();
  const double radius = diameter_ / 2.0 - (diameter_ > 48 ? 8 : 5);
  // Light from above: a bright rim over a face that falls off to the lower edge.
  const skin::Tones tones = Tones();
  const QColor card = tones.Card(), ink = tones.Ink();
  const bool light = tones.IsLight();
  QLinearGradient rim(middle.x(), middle.y() - radius, middle.x(), middle.y() + radius);
  rim.setColorAt(0, skin::Mixed(card, light ? ink : tones.Neutral(), light ? 0.2 : 0.44));
  rim.setColorAt(1, skin::Mixed(card, ink, light ? 0.5 : 0));
  painter.setPen(Qt::NoPen);
  painter.setBrush(rim);
  painter.drawEllipse(middle, radius, radius);
  QRadialGradient face(middle - QPointF(0, radius * 0.5), radius * 1.7);
  face.setColorAt(0, light ? QColor(Qt::white) : skin::Mixed(card, tones.Neutral(), 0.17));
  face.setColorAt(1, light ? skin::Mixed(card, ink, 0.14) : skin::Mixed(card, Qt::black, 0.1));
  painter.setBrush(face);
  painter.drawEllipse(middle, radius - 1.5, radius - 1.5);
  if (diameter_ <= 48) return;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(0, 0, 0, 70), 1));
  painter.drawEllipse(middle, radius * 0.82, radius * 0.82);
}

void KnobView::PaintScale(QPainter& painter) const {
  const QPointF middle = QRectF(rect()).center();
  const double radius = diameter_ / 2.0 - 2;
  if (dial_.Bounded()) {
    const QRectF arc(middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius);
    const auto draw = [&](const QColor& ink, double sweep) {
      painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::FlatCap));
      painter.drawArc(arc, static_cast<int>((90 - kStart) * 16), static_cast<int>(-sweep * 16));
    };
    draw(Tones().Unlit(), kSweep);
    draw(Tones().Accent(), ShownDegrees() - kStart);
    return;
  }
  for (int i = 0; i < Dial::kStepsPerTurn; i += 2) {
    const bool fifth = i % 10 == 0;
    painter.setPen(QPen(skin::Mixed(Tones().Card(), Tones().Neutral(), fifth ? 0.48 : 0.2), fifth ? 1.4 : 1));
    const double degrees = 360.0 * i / Dial::kStepsPerTurn;
    painter.drawLine(OnCircle(middle, radius, degrees), OnCircle(middle, radius - (fifth ? 4 : 3), degrees));
  }
}

void KnobView::paintEvent(QPaintEvent*) {
  const double ratio = devicePixelRatioF();
  if (body_.isNull() || body_.devicePixelRatio() != ratio) {
    body_ = QPixmap(size() * ratio);
    body_.setDevicePixelRatio(ratio);
    body_.fill(Qt::transparent);
    QPainter painter(&body_);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintBody(painter);
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (LooksOff()) painter.setOpacity(skin::kDisabledOpacity);
  painter.drawPixmap(0, 0, body_);
  PaintScale(painter);

  const QPointF middle = QRectF(rect()).center();
  const skin::Tones tones = Tones();
  const QColor light =
      IsHovered() || hasFocus() ? skin::Mixed(tones.Accent(), Qt::white, 0.2) : tones.Accent();
  if (diameter_ > 48) {
    const QPointF hole = OnCircle(middle, diameter_ * 0.27, ShownDegrees());
    painter.setPen(QPen(skin::Faded(light, 0.75), 1.4));
    painter.setBrush(skin::Mixed(tones.Face(), light, 0.18));
    painter.drawEllipse(hole, diameter_ * 0.068, diameter_ * 0.068);
  } else {
    painter.setPen(QPen(light, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(OnCircle(middle, diameter_ * 0.14, ShownDegrees()),
                     OnCircle(middle, diameter_ * 0.30, ShownDegrees()));
  }
}

}  // namespace quorl
