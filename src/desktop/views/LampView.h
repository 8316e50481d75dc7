// A small lamp: lit while its control is visible.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

class LampView : public View {
 public:
  LampView(RefreshClock& clock, Picture& lamp);

  QAccessible::Role Role() const override { return QAccessible::Indicator; }
  QSize sizeHint() const override { return {10, 24}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quorl
