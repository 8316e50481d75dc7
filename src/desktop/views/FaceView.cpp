#include "desktop/views/FaceView.h"

#include <QPainter>
#include <algorithm>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kSides = 3;

QFont CaptionFont(bool small, bool on) {
  return skin::WordFont(small ? 11 : 12, on);
}

}  // namespace

FaceView::FaceView(RefreshClock& clock, Control& control) : View(clock, control) {
  // A click leaves the keyboard where it is: with what is being tuned.
  setFocusPolicy(Qt::TabFocus);
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

void FaceView::SetGroup(const std::vector<FaceView*>& group) {
  group_ = group;
  FindTabStop();
}

bool FaceView::CanTakeKeys() const {
  return Shown().Enabled() && Shown().Visible();
}

// The pressed button of a group, or the first that can be pressed, stands for all.
void FaceView::FindTabStop() {
  FaceView* stop = nullptr;
  for (FaceView* face : group_) {
    if (face->CanTakeKeys() && (face->IsChecked() || !stop)) stop = face;
  }
  for (FaceView* face : group_) face->setFocusPolicy(stop && face == stop ? Qt::TabFocus : Qt::NoFocus);
}

void FaceView::TakeOver() {
  View::TakeOver();
  if (!group_.empty()) FindTabStop();
}

// The next one past what can't be pressed; not round the end.
FaceView* FaceView::Neighbour(int direction) const {
  const auto count = static_cast<int>(group_.size());
  auto at = static_cast<int>(std::find(group_.begin(), group_.end(), this) - group_.begin());
  for (at += direction; at >= 0 && at < count; at += direction) {
    FaceView* other = group_[static_cast<std::size_t>(at)];
    if (other->CanTakeKeys()) return other;
  }
  return nullptr;
}

void FaceView::SetSmall() {
  small_ = true;
  updateGeometry();
}

int FaceView::LeastWidth() const {
  return skin::TextWidth(CaptionFont(small_, true), Caption().remove('&')) + 2 * kSides;
}

QAccessible::Role FaceView::Role() const {
  const bool oneOfSeveral = option_ && !group_.empty();
  return oneOfSeveral ? QAccessible::RadioButton : box_ ? QAccessible::CheckBox : QAccessible::Button;
}

bool FaceView::IsChecked() const {
  return option_ ? option_->Value() : box_ && box_->Value();
}

QString FaceView::SpokenValue() const {
  return Role() == QAccessible::Button ? QString()
         : IsChecked()                 ? QStringLiteral("on")
                                       : QStringLiteral("off");
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
  if (IsPressKey(code)) {
    Press();
    return true;
  }
  const int direction = code == Key::Left || code == Key::Up      ? -1
                        : code == Key::Right || code == Key::Down ? 1
                                                                  : 0;
  if (group_.empty() || direction == 0) return false;
  if (FaceView* other = Neighbour(direction)) {
    other->setFocus(Qt::TabFocusReason);
    other->Press();
  }
  return true;
}

skin::ButtonLook FaceView::Look(bool on) const {
  const Colour own = Shown().BackColour() != kNoColour ? Shown().BackColour() : Shown().ForeColour();
  const QColor hue = Tones().HueOf(own == kNoColour && on ? kSelectedColour : own);
  return skin::LookOf(Tones(), hue,
                      {.On = on, .Hovered = IsHovered(), .Pressed = IsPressed(), .Off = LooksOff()});
}

void FaceView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool on = IsChecked();
  const skin::ButtonLook look = Look(on);
  painter.setPen(QPen(look.Edge, 1));
  painter.setBrush(look.Face);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), skin::kRadius, skin::kRadius);

  if (option_ && option_->Marked()) {
    constexpr int kInset = 8, kThick = 2;
    painter.fillRect(kInset, height() - kThick - 2, width() - 2 * kInset, kThick,
                     on ? look.Ink : Tones().Accent());
  }
  painter.setFont(CaptionFont(small_, on));
  painter.setPen(look.Ink);
  const bool showKeys = window()->property("showMnemonics").toBool();
  // A name that is too long for its button keeps its beginning: an ellipsis would take half of a short one.
  const bool fits = painter.fontMetrics().horizontalAdvance(Caption().remove('&')) <= width() - kSides;
  painter.drawText(rect().adjusted(kSides, 0, -kSides, 0),
                   static_cast<int>(fits ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter) |
                       (showKeys ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
                   Caption());
}

}  // namespace quorl
