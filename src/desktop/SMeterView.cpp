#include "desktop/SMeterView.h"

#include <QPainter>
#include <cmath>

#include "desktop/Skin.h"

namespace quorl {

namespace {

constexpr int kTop = 18, kBarHeight = 18, kScale = kTop + kBarHeight;
struct Mark {
  int Decibels;
  const char* Text;
};
constexpr Mark kMarks[] = {{6, "S1"},   {18, "3"},   {30, "5"},    {42, "7"},    {54, "9"},
                           {74, "+20"}, {94, "+40"}, {114, "+60"}, {134, "+80"}, {154, "+100"}};

QColor InkOf(int element) {
  const int decibels = (element + 1) * SMeterView::kDecibelsPerElement;
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
  double free = 0;
  for (const Mark& mark : kMarks) {
    const double x = pitch * mark.Decibels / kDecibelsPerElement;
    const QString text = mark.Text;
    const double width = skin::TextWidth(painter.font(), text);
    const double left = std::min(x - width / 2, this->width() - width);
    if (left < free || x > this->width()) continue;
    free = left + width + 4;
    painter.setPen(QColor(mark.Decibels < kS9Decibels + 20 ? 0xFF52606A : 0xFF7A5A38));
    painter.drawLine(QPointF(x - 0.5, kScale + 3), QPointF(x - 0.5, kScale + 6));
    painter.setPen(QColor(skin::kQuietInk));
    painter.drawText(QRectF(left, kScale + 8, width + 2, 14), Qt::AlignLeft | Qt::AlignTop, text);
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
  painter.drawText(QRect(0, 0, width(), 14), Qt::AlignRight | Qt::AlignTop,
                   QString::fromStdString(surface_.Caption()));
}

}  // namespace quorl
