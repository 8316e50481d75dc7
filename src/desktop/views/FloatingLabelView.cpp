#include "desktop/views/FloatingLabelView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kPixels = 13, kMargin = 8, kHeight = 22, kLine = 17;

}  // namespace

FloatingLabelView::FloatingLabelView(RefreshClock& clock, FloatingLabel& label, QWidget* anchor)
    : View(clock, label, anchor->window()), label_(label), words_(kPixels), anchor_(anchor) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  SetPrompt();
  hide();
}

void FloatingLabelView::TakeOver() {
  // The panel places it by its size, before it is seen for the first time.
  resize(sizeHint());
  TellPlace();
  const Control* picture = label_.Over();
  QWidget* window = anchor_ ? anchor_->window() : nullptr;
  StandOver(window && picture ? window->findChild<QWidget*>(QString::fromStdString(picture->Name()))
                              : nullptr);
  left_ = left_ && leftAt_ == Corner();
  if (!label_.Visible() || label_.Caption().empty() || left_ || !over_ || !over_->isVisibleTo(window)) {
    hide();
    return;
  }
  if (parentWidget() != window) setParent(window);
  move(Place(*window));
  show();
  raise();
  update();
}

// Whole, also at the window's edges. Where there is no room under the pointer it stands above what it is
// about, so that this can still be read.
QPoint FloatingLabelView::Place(const QWidget& window) const {
  const QPoint corner = over_->mapTo(&window, Corner());
  const int mostLeft = std::max(0, window.width() - width()),
            mostTop = std::max(0, window.height() - height());
  const int above = over_->mapTo(&window, QPoint(0, -height())).y();
  return {std::clamp(corner.x(), 0, mostLeft),
          corner.y() > mostTop && above >= 0 ? above : std::clamp(corner.y(), 0, mostTop)};
}

void FloatingLabelView::StandOver(QWidget* picture) {
  if (picture == over_) return;
  if (over_) over_->removeEventFilter(this);
  over_ = picture;
  if (over_) over_->installEventFilter(this);
}

bool FloatingLabelView::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::Leave) {
    left_ = true;
    leftAt_ = Corner();
    hide();
  } else if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
    MarkDirty();
  }
  return false;
}

QStringList FloatingLabelView::Lines() const {
  QStringList lines = Words().split('\n');
  if (const auto heading = QString::fromStdString(label_.Heading()); !heading.isEmpty())
    lines.prepend(heading);
  return lines;
}

QSize FloatingLabelView::sizeHint() const {
  if (const QStringList lines = Lines(); lines.size() > 1) {
    int width = 0;
    for (const QString& line : lines)
      width = std::max(width, skin::TextWidth(skin::WordFont(12, true), line));
    return {width + 2 * kMargin, static_cast<int>(lines.size()) * kLine + kMargin};
  }
  return {static_cast<int>(std::ceil(words_.Width(Words()))) + 2 * kMargin, kHeight};
}

void FloatingLabelView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Tones().CardLine(), 1));
  painter.setBrush(skin::Faded(Tones().Card(), 0.92));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), skin::kRadius, skin::kRadius);
  painter.setPen(Tones().Ink());
  const QStringList lines = Lines();
  if (lines.size() == 1) {
    words_.Draw(painter, kMargin, height(), Words());
    return;
  }
  for (int i = 0; i < lines.size(); ++i) {
    painter.setFont(skin::WordFont(12, i == 0 && !label_.Heading().empty()));
    painter.drawText(QRect(kMargin, kMargin / 2 + i * kLine, width(), kLine), Qt::AlignVCenter, lines[i]);
  }
}

}  // namespace quorl
