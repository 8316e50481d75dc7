#include "desktop/views/SplitView.h"

#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

SplitterView::SplitterView(RefreshClock& clock, Slider& slider) : View(clock, slider), slider_(slider) {
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::SplitVCursor);
  SetPrompt();
}

double SplitterView::Share() const {
  const double range = slider_.Max() - slider_.Min();
  return range > 0 ? slider_.Value() / (range + 2 * slider_.Min()) : 0.5;
}

void SplitterView::TakeOver() {
  View::TakeOver();
  if (auto* pane = dynamic_cast<SplitPane*>(parentWidget())) pane->Arrange();
}

QString SplitterView::SpokenValue() const {
  return QString::number(std::lround(100 * Share())) + QStringLiteral(" %");
}

std::optional<View::Range> SplitterView::SpokenRange() const {
  return Range{double(slider_.Value()), double(slider_.Min()), double(slider_.Max())};
}

void SplitterView::SetSpoken(double value) {
  if (slider_.Enabled()) slider_.UserScroll(static_cast<int>(std::lround(value)));
}

// The bar goes where the arrow points.
bool SplitterView::OnKey(int code, Modifiers with) {
  const int direction = code == Key::Down || code == Key::Right ? 1
                        : code == Key::Up || code == Key::Left  ? -1
                                                                : 0;
  return direction != 0 && Widen(direction, with);
}

void SplitterView::mousePressEvent(QMouseEvent* event) {
  View::mousePressEvent(event);
  grip_ = event->position().y();
}

void SplitterView::mouseMoveEvent(QMouseEvent* event) {
  View::mouseMoveEvent(event);
  const auto* pane = dynamic_cast<const SplitPane*>(parentWidget());
  if (!IsPressed() || !pane || pane->HeightToShare() <= 0 || !slider_.Enabled()) return;
  const double top = mapToParent(event->position()).y() - grip_;
  const int whole = slider_.Max() + slider_.Min();
  slider_.UserScroll(static_cast<int>(std::lround(whole * top / pane->HeightToShare())));
}

void SplitterView::paintEvent(QPaintEvent*) {
  constexpr double kGrip = 36, kThick = 3;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const bool lively = IsHovered() || IsPressed() || hasFocus();
  const skin::Tones tones = Tones();
  painter.setBrush(lively ? tones.Accent()
                          : skin::Readable(skin::Mixed(tones.Unlit(), tones.Neutral(), 0.35), tones.Card(),
                                           skin::kOffContrast));
  painter.drawRoundedRect(QRectF((width() - kGrip) / 2, (height() - kThick) / 2, kGrip, kThick), kThick / 2,
                          kThick / 2);
}

SplitPane::SplitPane(View* upper, SplitterView* bar, View* lower) : upper_(upper), bar_(bar), lower_(lower) {
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  for (View* view : {upper, static_cast<View*>(bar), lower}) {
    if (view) view->setParent(this);
  }
  if (lower_) lower_->installEventFilter(this);
}

void SplitPane::Arrange() {
  const bool both = upper_ && bar_ && lower_ && !lower_->isHidden();
  if (!both) {
    if (upper_) upper_->setGeometry(rect());
    return;
  }
  const int above = std::max(0, static_cast<int>(std::lround(HeightToShare() * bar_->Share())));
  upper_->setGeometry(0, 0, width(), above);
  bar_->setGeometry(0, above, width(), SplitterView::kHeight);
  lower_->setGeometry(0, above + SplitterView::kHeight, width(), HeightToShare() - above);
}

bool SplitPane::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent) Arrange();
  return false;
}

void SplitPane::resizeEvent(QResizeEvent*) {
  Arrange();
}

}  // namespace quorl
