#include "desktop/views/SMeterView.h"

#include <QPainter>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kTop = 18, kBarHeight = 18, kScale = kTop + kBarHeight, kMarkWidth = 40;

QColor InkOf(int element) {
  const int decibels = element * SMeterView::kDecibelsPerElement;
  if (decibels <= SMeterView::kS9Decibels) return QColor(skin::kGood);
  return QColor(decibels <= SMeterView::kS9Decibels + 40 ? skin::kStrong : skin::kOver);
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

void SMeterView::PaintScale(QPainter& painter, double pitch) const {
  painter.setFont(skin::WordFont(10));
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    const auto* element = dynamic_cast<const Picture*>(elements_[i]);
    if (!element || element->Caption().empty()) continue;
    const double x = pitch * (static_cast<double>(i) + 0.5) - 1;  // less half a gap
    painter.setPen(InkOf(static_cast<int>(i)).darker(160));
    painter.drawLine(QPointF(x, kScale + 3), QPointF(x, kScale + 6));
    painter.setPen(QColor(skin::kQuietInk));
    painter.drawText(QRectF(x - kMarkWidth / 2.0, kScale + 8, kMarkWidth, 14),
                     Qt::AlignHCenter | Qt::AlignTop, QString::fromStdString(element->Caption()));
  }
}

void SMeterView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const auto count = static_cast<int>(elements_.size());
  if (count == 0) return;
  const double pitch = double(width()) / count;
  // Whole device pixels keep 28 gaps equally wide to the eye.
  const double ratio = devicePixelRatioF();
  const auto snapped = [ratio](double x) { return std::round(x * ratio) / ratio; };
  painter.setPen(Qt::NoPen);
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (int i = 0; i < count; ++i) {
    const double left = snapped(i * pitch), right = snapped((i + 1) * pitch) - 2;
    const bool lit = elements_[static_cast<std::size_t>(i)]->Visible();
    painter.setBrush(lit ? InkOf(i) : skin::Mixed(QColor(skin::kUnlit), InkOf(i), 0.05));
    painter.drawRect(QRectF(left, kTop, right - left, kBarHeight));
  }
  painter.setRenderHint(QPainter::Antialiasing);
  PaintScale(painter, pitch);
  painter.setFont(skin::TitleFont());
  painter.setPen(QColor(skin::kQuietInk));
  painter.drawText(QRect(0, 0, width(), 14), Qt::AlignLeft | Qt::AlignTop, QStringLiteral("SIGNAL"));
  painter.setFont(skin::WordFont(10));
  painter.setPen(skin::Faded(skin::ColourOf(surface_.ForeColour(), skin::kInk), 0.7));
  painter.drawText(QRect(0, 0, width(), 14), Qt::AlignRight | Qt::AlignTop,
                   QString::fromStdString(surface_.Caption()));
}

}  // namespace quorl
