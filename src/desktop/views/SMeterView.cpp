#include "desktop/views/SMeterView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kTop = 18, kBarHeight = 18, kScale = kTop + kBarHeight, kMarkGap = 6;

QColor InkOf(const skin::Tones& tones, int element) {
  const int decibels = element * SMeterView::kDecibelsPerElement;
  return decibels <= SMeterView::kS9Decibels ? tones.Good() : tones.Strong();
}

}  // namespace

SMeterView::SMeterView(RefreshClock& clock, Picture& surface, std::vector<Control*> elements, Label* reading)
    : View(clock, surface), surface_(surface), elements_(std::move(elements)), reading_(reading) {
  for (Control* element : elements_) Watch(*element);
  SetSizes(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

int SMeterView::Lit() const {
  int lit = 0;
  for (const Control* element : elements_) lit += element->Visible() ? 1 : 0;
  return lit;
}

QString SMeterView::SpokenName() const {
  const std::string& own = Shown().AccessibleName();
  return own.empty() ? QStringLiteral("Signal strength") : QString::fromStdString(own);
}

QString SMeterView::SpokenValue() const {
  if (reading_) return QString::fromStdString(reading_->Caption());
  return QStringLiteral("%1 of %2").arg(Lit()).arg(elements_.size());
}

std::optional<View::Range> SMeterView::SpokenRange() const {
  return Range{double(Lit()), 0, double(elements_.size())};
}

QString SMeterView::CaptionOf(std::size_t element) const {
  const auto* picture = dynamic_cast<const Picture*>(elements_[element]);
  return picture ? QString::fromStdString(picture->Caption()) : QString();
}

std::vector<SMeterView::Mark> SMeterView::Marks() const {
  const double pitch = double(width()) / static_cast<double>(elements_.size());
  const QFont font = skin::WordFont(10);
  std::vector<Mark> marks;
  const auto add = [&](std::size_t i) {
    const QString caption = CaptionOf(i);
    const double middle = pitch * (static_cast<double>(i) + 0.5) - 1;  // less half a gap
    const double wide = skin::TextWidth(font, caption) + kMarkGap;
    const QRectF place(middle - wide / 2, kScale + 8, wide, 14);
    const bool free = std::none_of(marks.begin(), marks.end(),
                                   [&](const Mark& other) { return other.Place.intersects(place); });
    if (free && place.left() >= -kMarkGap && place.right() <= width() + kMarkGap)
      marks.push_back({static_cast<int>(i), place});
  };
  std::vector<std::size_t> captioned;
  std::size_t s9 = 0;
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    if (CaptionOf(i).isEmpty()) continue;
    if (i == kS9Decibels / kDecibelsPerElement) s9 = captioned.size();
    captioned.push_back(i);
  }
  // What is left of a crowded scale is evenly spaced.
  if (!captioned.empty()) add(captioned[s9]);
  for (const std::size_t odd : {s9 % 2, (s9 + 1) % 2}) {
    for (std::size_t j = odd; j < captioned.size(); j += 2) {
      if (j != s9) add(captioned[j]);
    }
  }
  return marks;
}

void SMeterView::PaintScale(QPainter& painter) const {
  painter.setFont(skin::WordFont(10));
  for (const Mark& mark : Marks()) {
    const double x = mark.Place.center().x();
    painter.setPen(InkOf(Tones(), mark.Element).darker(160));
    painter.drawLine(QPointF(x, kScale + 3), QPointF(x, kScale + 6));
    painter.setPen(Tones().Quiet());
    painter.drawText(mark.Place, Qt::AlignHCenter | Qt::AlignTop,
                     CaptionOf(static_cast<std::size_t>(mark.Element)));
  }
}

// The floor is in the tool tip, too, where there is no room for it.
void SMeterView::PaintHead(QPainter& painter) const {
  const QString title = QStringLiteral("SIGNAL"), floor = QString::fromStdString(surface_.Caption());
  painter.setFont(skin::TitleFont());
  painter.setPen(Tones().Quiet());
  painter.drawText(QRect(0, 0, width(), 14), Qt::AlignLeft | Qt::AlignTop, title);
  const QFont font = skin::WordFont(10);
  if (skin::TextWidth(skin::TitleFont(), title) + skin::TextWidth(font, floor) + skin::kGrid > width())
    return;
  painter.setFont(font);
  painter.setPen(skin::Mixed(Tones().Card(), Tones().Ink(), 0.7));
  painter.drawText(QRect(0, 0, width(), 14), Qt::AlignRight | Qt::AlignTop, floor);
}

// What stands around the bar.
void SMeterView::RenewBackdrop() {
  const double ratio = devicePixelRatioF();
  if (backdrop_.deviceIndependentSize() == QSizeF(size()) && backdrop_.devicePixelRatio() == ratio &&
      backdropCaption_ == surface_.Caption()) {
    return;
  }
  backdropCaption_ = surface_.Caption();
  backdrop_ = QPixmap(size() * ratio);
  backdrop_.setDevicePixelRatio(ratio);
  backdrop_.fill(Qt::transparent);
  QPainter painter(&backdrop_);
  painter.setRenderHint(QPainter::Antialiasing);
  PaintScale(painter);
  PaintHead(painter);
}

void SMeterView::paintEvent(QPaintEvent*) {
  const auto count = static_cast<int>(elements_.size());
  if (count == 0) return;
  RenewBackdrop();
  QPainter painter(this);
  painter.drawPixmap(0, 0, backdrop_);
  const double pitch = double(width()) / count;
  // Whole device pixels keep 28 gaps equally wide to the eye.
  const double ratio = devicePixelRatioF();
  const auto snapped = [ratio](double x) { return std::round(x * ratio) / ratio; };
  const skin::Tones tones = Tones();
  const QColor good = tones.Good(), strong = tones.Strong(), unlit = tones.Unlit();
  for (int i = 0; i < count; ++i) {
    const double left = snapped(i * pitch), right = snapped((i + 1) * pitch) - 2;
    const bool lit = elements_[static_cast<std::size_t>(i)]->Visible();
    const QColor ink = i <= kS9Decibels / kDecibelsPerElement ? good : strong;
    painter.fillRect(QRectF(left, kTop, right - left, kBarHeight), lit ? ink : skin::Mixed(unlit, ink, 0.05));
  }
}

}  // namespace quorl
