#include "desktop/views/SeekView.h"

#include <QPainter>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

void SeekView::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    if (LooksOff()) painter.setOpacity(skin::kDisabledOpacity);
    int before = -1;
    for (const int mark : marked_.Marks()) {
      const int x = static_cast<int>(std::lround(PlaceOf(mark)));
      if (x == before) continue;  // a night has more tracks than a slider has pixels
      before = x;
      painter.fillRect(x, height() / 2 - 8, 1, 16, Tones().Neutral());
    }
  }
  SliderView::paintEvent(event);
}

}  // namespace quorl
