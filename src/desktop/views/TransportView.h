// A button of the recorder: the sign that every deck has for it.
#pragma once

#include "controls/LatchButton.h"
#include "desktop/views/FaceView.h"

class QPainter;

namespace quorl {

enum class TransportSign { Record, Play, Pause, Stop, Previous, Next, Loop, Load, Save, Close };

// Hidden, it keeps its place.
class TransportView : public FaceView {
 public:
  TransportView(RefreshClock& clock, LatchButton& button, TransportSign sign);

  bool IsChecked() const override { return button_.Down(); }
  QString SpokenValue() const override;
  QSize sizeHint() const override { return {30, 24}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void DrawSign(QPainter& painter, const QColor& ink) const;

  LatchButton& button_;
  TransportSign sign_;
};

}  // namespace quorl
