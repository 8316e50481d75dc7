// A message of several lines, as wide as its window wants it.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

class MessageView : public View {
 public:
  MessageView(RefreshClock& clock, Label& message, int width);

  QString SpokenValue() const override { return Words(); }
  bool IsText() const override { return true; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString Words() const { return QString::fromStdString(message_.Caption()); }

  Label& message_;
  int width_;
};

}  // namespace quorl
