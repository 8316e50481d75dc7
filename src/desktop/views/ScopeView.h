// The picture of the scope: two surfaces for its panel to draw on, and the pointer's gestures.
#pragma once

#include "desktop/views/QtCanvas.h"
#include "desktop/views/View.h"
#include "display/canvas/CanvasPicture.h"

namespace quorl {

// Painting copies the surface that is visible, whatever is being drawn on the other one.
class ScopeView : public View {
 public:
  ScopeView(RefreshClock& clock, CanvasPicture& picture);
  ~ScopeView() override;

  // Device pixels a pixel, in place of the screen's; 0 for those again.
  void SetRatio(double ratio);
  QAccessible::Role Role() const override { return QAccessible::Canvas; }
  QString SpokenName() const override;
  QSize minimumSizeHint() const override { return {160, 40}; }
  QSize sizeHint() const override { return {640, 240}; }

 protected:
  // Its panel draws it when there is something new.
  void ShowChange() override {}
  void OnClick(const MouseEvent& at) override { Shown().UserClick(at); }
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  double WantedRatio() const { return ratio_ > 0 ? ratio_ : devicePixelRatioF(); }
  void Lend();

  CanvasPicture& picture_;
  double ratio_ = 0;
  QtCanvas surface0_, surface1_;
};

}  // namespace quorl
