#include "desktop/views/TickView.h"

#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kBox = 16, kGap = 8;

}  // namespace

TickView::TickView(RefreshClock& clock, CheckBox& box) : View(clock, box), box_(box) {
  setFocusPolicy(Qt::TabFocus);
  SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QString TickView::SpokenValue() const {
  return IsChecked() ? QStringLiteral("on") : QStringLiteral("off");
}

QSize TickView::sizeHint() const {
  return {kBox + kGap + skin::TextWidth(skin::WordFont(), Caption().remove('&')) + 2, skin::kButtonHeight};
}

bool TickView::OnKey(int code, Modifiers) {
  if (IsPressKey(code)) Press();
  return IsPressKey(code);
}

void TickView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const skin::Tones tones = Tones();
  const skin::ButtonLook look =
      skin::LookOf(tones, tones.HueOf(IsChecked() ? kSelectedColour : kUnselectedColour),
                   {.On = IsChecked(), .Hovered = IsHovered(), .Pressed = IsPressed(), .Off = LooksOff()});
  const QRectF box(0.5, (height() - kBox) / 2.0 + 0.5, kBox - 1, kBox - 1);
  painter.setPen(QPen(look.Edge, 1));
  painter.setBrush(look.Face);
  painter.drawRoundedRect(box, 3, 3);
  if (IsChecked()) {
    const QPointF middle = box.center();
    const QPointF tick[] = {middle + QPointF(-3.5, 0), middle + QPointF(-1, 2.8), middle + QPointF(3.8, -3)};
    painter.setPen(QPen(look.Ink, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(tick, 3);
  }
  painter.setFont(skin::WordFont());
  painter.setPen(LooksOff() ? skin::SwitchedOff(tones.Ink(), tones.Card()) : tones.Ink());
  painter.drawText(rect().adjusted(kBox + kGap, 0, 0, 0),
                   static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextShowMnemonic, Caption());
}

}  // namespace quorl
