#include "desktop/views/FaceView.h"

#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

FaceView::FaceView(RefreshClock& clock, Control& control) : View(clock, control) {
  setFocusPolicy(Qt::StrongFocus);
  SetSizes(QSizePolicy::Preferred, QSizePolicy::Fixed, false);
}

FaceView::FaceView(RefreshClock& clock, CommandButton& button)
    : FaceView(clock, static_cast<Control&>(button)) {
  button_ = &button;
}

FaceView::FaceView(RefreshClock& clock, CheckBox& box) : FaceView(clock, static_cast<Control&>(box)) {
  box_ = &box;
}

FaceView::FaceView(RefreshClock& clock, OptionButton& option)
    : FaceView(clock, static_cast<Control&>(option)) {
  option_ = &option;
}

void FaceView::SetNeighbours(FaceView* previous, FaceView* next) {
  previous_ = previous;
  next_ = next;
}

void FaceView::SetSmall() {
  small_ = true;
  updateGeometry();
}

QAccessible::Role FaceView::Role() const {
  return option_ ? QAccessible::RadioButton : box_ ? QAccessible::CheckBox : QAccessible::Button;
}

bool FaceView::IsChecked() const {
  return option_ ? option_->Value() : box_ && box_->Value();
}

QString FaceView::SpokenValue() const {
  return button_ ? QString() : IsChecked() ? QStringLiteral("on") : QStringLiteral("off");
}

QString FaceView::Caption() const {
  const std::string& text = button_ ? button_->Caption() : box_ ? box_->Caption() : option_->Caption();
  return QString::fromStdString(text);
}

QSize FaceView::sizeHint() const {
  const int width = skin::TextWidth(skin::WordFont(12, true), Caption().remove('&'));
  return small_ ? QSize(std::max(32, width + 14), 20) : QSize(std::max(40, width + 16), skin::kButtonHeight);
}

bool FaceView::OnKey(int code, Modifiers) {
  if (code == Key::Space || code == 13) {
    Press();
    return true;
  }
  FaceView* other = code == Key::Left || code == Key::Up      ? previous_
                    : code == Key::Right || code == Key::Down ? next_
                                                              : nullptr;
  if (!other || !other->isVisible() || !other->isEnabled()) return false;
  other->setFocus(Qt::TabFocusReason);
  other->Press();
  return true;
}

FaceView::Look FaceView::LookOf(bool on) const {
  const Colour own = Shown().BackColour() != 0 ? Shown().BackColour() : Shown().ForeColour();
  QColor hue = skin::ColourOf(own != 0 ? own : on ? skin::kSelected : skin::kUnselected);
  if (skin::IsAlarm(hue)) hue = QColor(skin::kNeutral);
  if (LooksOff()) {
    const QColor face = skin::Mixed(QColor(skin::kCard), hue, on ? 0.2 : 0.02);
    const QColor edge = skin::Mixed(QColor(skin::kCard), hue, on ? 0.4 : 0.2);
    return {face, edge, skin::SwitchedOff(skin::Mixed(hue, Qt::white, 0.45), face)};
  }
  QColor face = on ? hue : skin::Mixed(QColor(skin::kFace), hue, IsHovered() ? 0.16 : 0.04);
  if (on && IsHovered()) face = skin::Mixed(face, Qt::white, 0.15);
  if (IsPressed()) face = skin::Mixed(face, Qt::black, 0.25);
  return on ? Look{face, face, QColor(skin::kDarkInk)}
            : Look{face, skin::Mixed(QColor(skin::kFace), hue, 0.55), skin::Mixed(hue, Qt::white, 0.45)};
}

void FaceView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool on = IsChecked();
  const Look look = LookOf(on);
  painter.setPen(QPen(look.Edge, 1));
  painter.setBrush(look.Face);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), skin::kRadius, skin::kRadius);

  painter.setFont(skin::WordFont(small_ ? 11 : 12, on));
  painter.setPen(look.Ink);
  const bool showKeys = window()->property("showMnemonics").toBool();
  painter.drawText(rect(), Qt::AlignCenter | (showKeys ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
                   Caption());
}

}  // namespace quorl
