// A few quiet words about what stands above them.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

// Takes what width there is, and always the height of its lines, so that nothing moves when the words come.
class AdviceView : public View {
 public:
  AdviceView(RefreshClock& clock, Label& label, int lines);

  // A single line stands in the middle of that height instead of at its top.
  void SetCentred() { down_ = Qt::AlignVCenter; }

  QString SpokenValue() const override { return Words(); }
  bool IsText() const override { return true; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString Words() const { return QString::fromStdString(label_.Caption()); }

  Label& label_;
  int lines_;
  Qt::AlignmentFlag down_ = Qt::AlignTop;
};

}  // namespace quorl
