#include "desktop/views/MessageView.h"

#include <QFontMetrics>
#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

// A path has few places to break at.
constexpr int kHow = static_cast<int>(Qt::AlignLeft | Qt::AlignTop) | Qt::TextWrapAnywhere | Qt::TextWordWrap;

}  // namespace

MessageView::MessageView(RefreshClock& clock, Label& message, int width)
    : View(clock, message), message_(message), width_(width) {
  SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize MessageView::sizeHint() const {
  constexpr int kTallest = 1000;
  const QRect needed =
      QFontMetrics(skin::WordFont()).boundingRect(QRect(0, 0, width_, kTallest), kHow, Words());
  return {width_, needed.height()};
}

void MessageView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(skin::WordFont());
  painter.setPen(Tones().Ink());
  painter.drawText(rect(), kHow, Words());
}

}  // namespace quorl
