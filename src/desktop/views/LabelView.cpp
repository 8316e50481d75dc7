#include "desktop/views/LabelView.h"

#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kUnitPixels = 12, kUnitGap = 5;
constexpr int kValueMargin = 4;  // room for the border of a value that is being turned

}  // namespace

LabelView::LabelView(RefreshClock& clock, Label& label, LabelStyle style, const QString& widest, int pixels)
    : View(clock, label), label_(label), style_(style), widest_(widest), pixels_(pixels) {
  if (pixels_ == 0) pixels_ = style == LabelStyle::Word ? 12 : 15;
  if (style == LabelStyle::Value) setFocusPolicy(Qt::StrongFocus);
  SetSizes(widest_.isEmpty() ? QSizePolicy::Preferred : QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void LabelView::SetUnit(const QString& unit) {
  unit_ = unit;
  updateGeometry();
}

QFont LabelView::Font() const {
  return style_ == LabelStyle::Word ? skin::WordFont(pixels_) : skin::NumberFont(pixels_);
}

QAccessible::Role LabelView::Role() const {
  return style_ == LabelStyle::Value ? QAccessible::SpinBox : QAccessible::StaticText;
}

QString LabelView::SpokenName() const {
  const bool named = !label_.AccessibleName().empty() || !label_.ToolTip().empty();
  return style_ == LabelStyle::Word && !named ? QString::fromStdString(label_.Caption()) : View::SpokenName();
}

QString LabelView::SpokenValue() const {
  return unit_.isEmpty() ? View::SpokenValue() : View::SpokenValue() + ' ' + unit_;
}

QSize LabelView::sizeHint() const {
  const QString text = widest_.isEmpty() ? QString::fromStdString(label_.Caption()) : widest_;
  const int margin = style_ == LabelStyle::Value ? 2 * kValueMargin : 0;
  const int unit = unit_.isEmpty() ? 0 : kUnitGap + skin::TextWidth(skin::WordFont(kUnitPixels), unit_);
  return {skin::TextWidth(Font(), text) + unit + margin, pixels_ + 5};
}

QColor LabelView::Ink() const {
  const QRgb plain = style_ == LabelStyle::Word ? skin::kQuietInk : skin::kInk;
  const QColor ink = skin::ColourOf(label_.ForeColour(), plain);
  // A number that a hand may turn is no fault.
  if (style_ != LabelStyle::Value || !skin::IsAlarm(ink)) return ink;
  return QColor(IsHovered() || hasFocus() ? skin::kAccent : plain);
}

bool LabelView::OnKey(int code, Modifiers) {
  if ((code != Key::Space && code != 13) || !label_.Click) return false;
  Press();
  return true;
}

void LabelView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const auto shown = [this](const QColor& ink) {
    return LooksOff() ? skin::SwitchedOff(ink, QColor(skin::kCard)) : ink;
  };
  const QColor ink = shown(Ink());
  const int margin = style_ == LabelStyle::Value ? kValueMargin : 0;
  if (label_.Border()) {
    painter.setPen(QPen(ink, 1));
    painter.setBrush(skin::Mixed(QColor(skin::kCard), ink, 0.12));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
  }
  painter.setFont(Font());
  painter.setPen(ink);
  const QRect line = rect().adjusted(margin, 0, -margin, 0);
  const QString text = QString::fromStdString(label_.Caption());
  painter.drawText(line, alignment_ | Qt::AlignVCenter | Qt::TextSingleLine, text);
  if (unit_.isEmpty()) return;
  painter.setFont(skin::WordFont(kUnitPixels));
  painter.setPen(shown(QColor(skin::kQuietInk)));
  painter.drawText(line.adjusted(skin::TextWidth(Font(), text) + kUnitGap, 0, 0, 0),
                   Qt::AlignVCenter | Qt::TextSingleLine, unit_);
}

}  // namespace quorl
