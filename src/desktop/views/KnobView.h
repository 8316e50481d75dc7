// A knob, turned by the mouse around its middle, by the wheel and by keys.
#pragma once

#include <QPixmap>

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

// One wheel notch or arrow key is one step, with Shift ten. A knob without ends shows its value as the place
// of a finger hole, one with ends as an arc from its least value on.
class KnobView : public View {
 public:
  KnobView(RefreshClock& clock, Dial& dial, int diameter);

  QAccessible::Role Role() const override { return QAccessible::Dial; }
  std::optional<Range> SpokenRange() const override;
  void Step(int steps) override { dial_.UserStep(steps); }
  QSize sizeHint() const override { return {diameter_, diameter_}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool OnKey(int code, Modifiers with) override;
  void OnClick(const MouseEvent&) override {}
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void TakeTones() override { body_ = {}; }

 private:
  double DegreesAt(const QPointF& point) const;
  double ShownDegrees() const;
  void PaintBody(QPainter& painter) const;
  void PaintScale(QPainter& painter) const;

  Dial& dial_;
  int diameter_;
  double lastDegrees_ = 0, turned_ = 0;
  QPixmap body_;
};

}  // namespace quorl
