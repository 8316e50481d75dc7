// A slider: a thin line with a handle.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

class SliderView : public View {
 public:
  SliderView(RefreshClock& clock, Slider& slider, int width);

  QAccessible::Role Role() const override { return QAccessible::Slider; }
  QString SpokenValue() const override;
  std::optional<Range> SpokenRange() const override;
  void SetSpoken(double value) override;
  void Step(int steps) override;
  QSize sizeHint() const override { return {width_, 16}; }
  QSize minimumSizeHint() const override { return {32, 16}; }

 protected:
  bool OnKey(int code, Modifiers with) override;
  void OnClick(const MouseEvent&) override {}
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  // Where a value stands, in pixels from the left.
  double PlaceOf(int value) const;

 private:
  void Set(int value);
  void MoveTo(double x);

  Slider& slider_;
  int width_;
};

}  // namespace quorl
