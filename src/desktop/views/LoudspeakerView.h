// The sign of a loudspeaker, crossed out while it is muted.
#pragma once

#include "desktop/views/FaceView.h"

namespace quorl {

class LoudspeakerView : public FaceView {
 public:
  LoudspeakerView(RefreshClock& clock, CheckBox& mute) : FaceView(clock, mute) {}

  QSize sizeHint() const override { return {32, 24}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quorl
