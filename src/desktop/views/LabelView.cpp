#include "desktop/views/LabelView.h"

#include <QPainter>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kWordPixels = 12, kNumberPixels = 15;
constexpr int kUnitPixels = 12, kUnitGap = 5;
constexpr int kValueMargin = 4;  // room for the border of a value that is being turned

}  // namespace

LabelView::LabelView(RefreshClock& clock, Label& label, LabelStyle style, const QString& widest, int pixels)
    : View(clock, label),
      label_(label),
      style_(style),
      widest_(widest),
      pixels_(pixels != 0                 ? pixels
              : style == LabelStyle::Word ? kWordPixels
                                          : kNumberPixels),
      number_(pixels_) {
  if (style == LabelStyle::Value) setFocusPolicy(Qt::StrongFocus);
  if (style == LabelStyle::Reading) SetRead();
  SetSizes(widest_.isEmpty() ? QSizePolicy::Preferred : QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void LabelView::SetUnit(const QString& unit) {
  unit_ = unit;
  hint_ = {};
  updateGeometry();
}

void LabelView::SetName(const QString& name) {
  name_ = name;
  hint_ = {};
  updateGeometry();
}

int LabelView::NameWidth() const {
  return name_.isEmpty() ? 0 : skin::TextWidth(skin::WordFont(kUnitPixels), name_) + kUnitGap;
}

void LabelView::SetWord(const QString& word) {
  word_ = word;
  updateGeometry();
}

QString LabelView::Words() const {
  return word_.isEmpty() ? QString::fromStdString(label_.Caption()) : word_;
}

QAccessible::Role LabelView::Role() const {
  if (label_.Number) return QAccessible::SpinBox;
  return style_ == LabelStyle::Value && label_.Click ? QAccessible::Button : QAccessible::StaticText;
}

QString LabelView::SpokenName() const {
  const bool named = !label_.AccessibleName().empty() || !label_.ToolTip().empty();
  return style_ == LabelStyle::Word && !named ? Words() : View::SpokenName();
}

QString LabelView::SpokenValue() const {
  return unit_.isEmpty() ? Words() : Words() + ' ' + unit_;
}

std::optional<View::Range> LabelView::SpokenRange() const {
  if (!label_.Number) return {};
  const Label::TurnedNumber number = label_.Number();
  return Range{number.Value, number.Minimum, number.Maximum};
}

double LabelView::WidthOf(const QString& text) const {
  return style_ == LabelStyle::Word ? skin::TextWidth(skin::WordFont(pixels_), text) : number_.Width(text);
}

QSize LabelView::sizeHint() const {
  if (!widest_.isEmpty() && hint_.isValid()) return hint_;
  const QString text = widest_.isEmpty() ? Words() : widest_;
  const int margin = style_ == LabelStyle::Value ? 2 * kValueMargin : 0;
  const int unit = unit_.isEmpty() ? 0 : kUnitGap + skin::TextWidth(skin::WordFont(kUnitPixels), unit_);
  return hint_ = {NameWidth() + static_cast<int>(std::ceil(WidthOf(text))) + unit + margin, pixels_ + 5};
}

QColor LabelView::Ink() const {
  const skin::Tones tones = Tones();
  const QColor plain = style_ == LabelStyle::Word ? tones.Quiet() : tones.Ink();
  const Colour number = label_.ForeColour();
  const QColor ink = number == kNoColour ? plain : tones.Of(number);
  // A number that a hand may turn is no fault.
  if (style_ != LabelStyle::Value || !skin::IsAlarm(ink)) return tones.Text(ink);
  return tones.Text(IsHovered() || hasFocus() ? tones.Accent() : plain);
}

bool LabelView::OnKey(int code, Modifiers) {
  if (!IsPressKey(code) || !label_.Click) return false;
  Press();
  return true;
}

void LabelView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const skin::Tones tones = Tones();
  const auto shown = [&](const QColor& ink) {
    return LooksOff() ? skin::SwitchedOff(ink, tones.Card()) : ink;
  };
  const QColor ink = shown(Ink());
  const int margin = style_ == LabelStyle::Value ? kValueMargin : 0;
  const QRect place = rect().adjusted(NameWidth(), 0, 0, 0);
  if (label_.Border()) {
    painter.setPen(QPen(ink, 1));
    painter.setBrush(skin::Mixed(tones.Card(), ink, 0.12));
    painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
  }
  if (!name_.isEmpty()) {
    painter.setPen(shown(tones.Quiet()));
    painter.setFont(skin::WordFont(kUnitPixels));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, name_);
  }
  painter.setPen(ink);
  const QRect line = place.adjusted(margin, 0, -margin, 0);
  const QString text = Words();
  if (style_ == LabelStyle::Word) {
    painter.setFont(skin::WordFont(pixels_));
    painter.drawText(line, static_cast<int>(alignment_ | Qt::AlignVCenter) | Qt::TextSingleLine, text);
  } else {
    const double spare = line.width() - WidthOf(text);
    const double left = line.left() + (alignment_ == Qt::AlignRight ? spare : 0);
    number_.Draw(painter, left, height(), text);
  }
  if (unit_.isEmpty() || text.isEmpty()) return;
  painter.setPen(shown(tones.Quiet()));
  painter.setFont(skin::WordFont(kUnitPixels));
  painter.drawText(line.adjusted(static_cast<int>(WidthOf(text)) + kUnitGap, 0, 0, 0),
                   Qt::AlignVCenter | Qt::TextSingleLine, unit_);
}

}  // namespace quorl
