// A slider with its marks: small strokes under its way.
#pragma once

#include "controls/MarkedSlider.h"
#include "desktop/views/SliderView.h"

namespace quorl {

class SeekView : public SliderView {
 public:
  SeekView(RefreshClock& clock, MarkedSlider& slider, int width)
      : SliderView(clock, slider, width), marked_(slider) {}

  bool IsText() const override { return false; }
  QSize sizeHint() const override { return {SliderView::sizeHint().width(), 24}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  MarkedSlider& marked_;
};

}  // namespace quorl
