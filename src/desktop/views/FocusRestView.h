// A place for the keyboard where no key means anything of its own: the window has them all.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

class FocusRestView : public View {
 public:
  FocusRestView(RefreshClock& clock, Picture& place) : View(clock, place) {
    SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed);
  }

  QAccessible::Role Role() const override { return QAccessible::Grouping; }
  QString SpokenValue() const override { return {}; }
  bool TakesKeys() const override { return false; }  // the Tab key passes it by
  QSize sizeHint() const override { return {0, 24}; }
  QSize minimumSizeHint() const override { return sizeHint(); }
};

}  // namespace quorl
