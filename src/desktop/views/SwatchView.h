// A patch of the colour that its control carries.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

// The colour as it is, neither softened nor moved; a click is the control's.
class SwatchView : public View {
 public:
  SwatchView(RefreshClock& clock, Picture& swatch);

  QAccessible::Role Role() const override { return QAccessible::Graphic; }
  QSize sizeHint() const override { return {48, 22}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void OnClick(const MouseEvent& at) override { Shown().UserClick(at); }
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quorl
