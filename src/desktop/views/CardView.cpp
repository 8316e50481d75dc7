#include "desktop/views/CardView.h"

#include <QPaintEvent>
#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kTitleHeight = 20, kPadding = 12, kCorner = 6;

}  // namespace

CardView::CardView(RefreshClock& clock, Frame& frame, const QString& title, Title shown)
    : View(clock, frame), frame_(frame), title_(title), shown_(shown), rows_(new QVBoxLayout(this)) {
  rows_->setContentsMargins(kPadding, skin::kGrid, kPadding, skin::kGrid);
  rows_->setSpacing(4);
  rows_->addStretch(1);
  SetSizes(QSizePolicy::Preferred, QSizePolicy::Preferred, shown == Title::Flat);
  CardView::TakeTones();
  if (shown == Title::Flat) rows_->setContentsMargins(0, 0, 0, 0);
  if (shown == Title::Beside) {
    const int width = skin::TextWidth(skin::TitleFont(), TitleText().toUpper());
    rows_->setContentsMargins(kPadding + width + kPadding, skin::kGrid, kPadding, skin::kGrid);
  }
  if (shown != Title::Shown) return;
  titleRow_ = new QHBoxLayout;
  titleRow_->setSpacing(4);
  // A row without a widget would be left out, with its height and its spacing.
  auto* place = new QWidget(this);
  place->setAttribute(Qt::WA_TransparentForMouseEvents);
  place->setFixedHeight(kTitleHeight);
  titleRow_->addWidget(place, 1);
  rows_->insertLayout(0, titleRow_);
}

QHBoxLayout* CardView::AddRow(int stretch) {
  auto* row = new QHBoxLayout;
  row->setSpacing(4);
  rows_->insertLayout(rows_->count() - 1, row, stretch);
  if (stretch > 0) rows_->setStretch(rows_->count() - 1, 0);
  return row;
}

QString CardView::TitleText() const {
  const std::string& caption = frame_.Caption();
  return caption.empty() ? title_ : QString::fromStdString(caption).remove('&');
}

QString CardView::SpokenName() const {
  const std::string& own = frame_.AccessibleName();
  return own.empty() ? TitleText() : QString::fromStdString(own);
}

// Once for each change: a card is painted again with every number that stands on it.
void CardView::TakeTones() {
  const skin::Tones tones = Tones();
  const Colour number = frame_.ForeColour();
  const QColor ink = number == kNoColour ? tones.Quiet() : tones.Of(number);
  // Only a colour that calls for attention tints the edge.
  const double tint = ink.hsvSaturationF() > 0.6F ? 0.30 : 0.0;
  ground_ = tones.Card();
  edge_ = skin::Mixed(tones.CardLine(), ink, tint);
  ink_ = skin::Readable(ink, ground_, tones.TextContrast());
}

void CardView::TakeOver() {
  TakeTones();
  View::TakeOver();
}

void CardView::paintEvent(QPaintEvent* event) {
  if (shown_ == Title::Flat) return;
  QPainter painter(this);
  // Mostly a card is the ground of a number that has changed.
  const QRect inside = rect().adjusted(kCorner, kCorner, -kCorner, -kCorner);
  if (inside.contains(event->rect())) {
    painter.fillRect(event->rect(), ground_);
  } else {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(edge_, 1));
    painter.setBrush(ground_);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
  }
  if (shown_ == Title::None) return;
  const int high = shown_ == Title::Beside ? height() - 2 * skin::kGrid : kTitleHeight;
  const QRect place(kPadding, skin::kGrid, width() - 2 * kPadding, high);
  if (!event->rect().intersects(place)) return;
  painter.setFont(skin::TitleFont());
  painter.setPen(ink_);
  painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, TitleText().toUpper());
}

}  // namespace quorl
