#include "desktop/views/LevelBarView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kBarHeight = 8, kGap = 2;

}  // namespace

LevelBarView::LevelBarView(RefreshClock& clock, LevelBar& bar) : View(clock, bar), bar_(bar) {
  SetRead();  // with the figures beside it, in one painting
  SetSizes(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

std::optional<View::Range> LevelBarView::SpokenRange() const {
  return Range{std::round(bar_.Level() * 100), 0, 100};
}

// The band that is reached is lit in its own ink, and those below with it: the eye needs one colour only.
void LevelBarView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const skin::Tones tones = Tones();
  const QColor lit = tones.Text(bar_.ForeColour(), tones.Quiet());
  const std::vector<double>& bands = bar_.Bands();
  const double top = (height() - kBarHeight) / 2.0, end = bar_.Level() * width();
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const bool last = i + 1 == bands.size();
    const double from = std::round(bands[i] * width());
    const double to = last ? width() : std::round(bands[i + 1] * width()) - kGap;
    painter.fillRect(QRectF(from, top, to - from, kBarHeight), LooksOff() ? tones.Face() : tones.Unlit());
    if (end > from) painter.fillRect(QRectF(from, top, std::min(end, to) - from, kBarHeight), lit);
  }
}

}  // namespace quorl
