// What is wrong with a field, in words under it.
#pragma once

#include <QLabel>

#include "controls/Control.h"

namespace quorl {

// There only while the control has a fault; the control outlives it.
class FaultLine : public QLabel {
 public:
  explicit FaultLine(Control& control);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Follow();

  Control& control_;
  Listening following_;
};

}  // namespace quorl
