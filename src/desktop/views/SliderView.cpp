#include "desktop/views/SliderView.h"

#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr double kHandle = 5;  // half of its width

}  // namespace

SliderView::SliderView(RefreshClock& clock, Slider& slider, int width)
    : View(clock, slider), slider_(slider), width_(width) {
  setFocusPolicy(Qt::StrongFocus);
  SetSizes(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

std::optional<View::Range> SliderView::SpokenRange() const {
  const int value = slider_.Reversed() ? slider_.Max() + slider_.Min() - slider_.Value() : slider_.Value();
  return Range{double(value), double(slider_.Min()), double(slider_.Max())};
}

void SliderView::Set(int value) {
  if (slider_.Enabled()) slider_.UserScroll(value);
}

QString SliderView::SpokenValue() const {
  return slider_.Reversed() ? QString::number(SpokenRange()->Value) : View::SpokenValue();
}

void SliderView::SetSpoken(double value) {
  const int whole = static_cast<int>(std::lround(value));
  Set(slider_.Reversed() ? slider_.Max() + slider_.Min() - whole : whole);
}

void SliderView::Step(int steps) {
  slider_.UserTurn(steps, {});
}

bool SliderView::OnKey(int code, Modifiers with) {
  const int direction = TurnOf(code);
  return direction != 0 && slider_.UserTurn(direction, with);
}

double SliderView::PlaceOf(int value) const {
  const double range = slider_.Max() - slider_.Min();
  const double share = range == 0 ? 0 : (value - slider_.Min()) / range;
  return kHandle + (slider_.Reversed() ? 1 - share : share) * (width() - 2 * kHandle);
}

void SliderView::MoveTo(double x) {
  double share = std::clamp((x - kHandle) / std::max(1.0, width() - 2 * kHandle), 0.0, 1.0);
  if (slider_.Reversed()) share = 1 - share;
  Set(slider_.Min() + static_cast<int>(std::lround(share * (slider_.Max() - slider_.Min()))));
}

void SliderView::mousePressEvent(QMouseEvent* event) {
  View::mousePressEvent(event);
  if (event->button() == Qt::LeftButton) MoveTo(event->position().x());
}

void SliderView::mouseMoveEvent(QMouseEvent* event) {
  View::mouseMoveEvent(event);
  if (IsPressed()) MoveTo(event->position().x());
}

void SliderView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (LooksOff()) painter.setOpacity(skin::kDisabledOpacity);
  const double middle = height() / 2.0;
  const double at = PlaceOf(slider_.Value());
  const bool lively = IsHovered() || IsPressed() || hasFocus();
  painter.setPen(Qt::NoPen);
  const skin::Tones tones = Tones();
  painter.setBrush(tones.Unlit());
  painter.drawRoundedRect(QRectF(1, middle - 1.5, width() - 2, 3), 1.5, 1.5);
  painter.setBrush(skin::Mixed(tones.Card(), tones.Accent(), lively ? 0.75 : 0.5));
  painter.drawRoundedRect(QRectF(1, middle - 1.5, at - 1, 3), 1.5, 1.5);
  painter.setBrush(lively ? tones.Accent() : tones.Neutral());
  painter.drawRoundedRect(QRectF(at - 3, middle - 6, 6, 12), 2, 2);
}

}  // namespace quorl
