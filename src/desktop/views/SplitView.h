// Two widgets one over the other, and the bar between them that shares out the height.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

// The bar: a slider whose value is the upper one's share. Down and to the right is more; the wheel turns it
// as it turns any slider.
class SplitterView : public View {
 public:
  static constexpr int kHeight = 8;

  SplitterView(RefreshClock& clock, Slider& slider);

  double Share() const;  // 0 to 1
  void TakeOver() override;
  QAccessible::Role Role() const override { return QAccessible::Slider; }
  QString SpokenValue() const override;
  std::optional<Range> SpokenRange() const override;
  void SetSpoken(double value) override;
  void Step(int steps) override { Widen(steps, {}); }

 protected:
  bool OnKey(int code, Modifiers with) override;
  bool OnWheel(int notches, Modifiers with) override { return slider_.UserTurn(notches, with); }
  void OnClick(const MouseEvent&) override {}
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  // Of the upper one, by steps.
  bool Widen(int steps, Modifiers with) {
    return slider_.UserTurn(slider_.Reversed() ? -steps : steps, with);
  }

  Slider& slider_;
  double grip_ = 0;  // where in the bar it is held
};

// While the lower one is hidden the upper one has all. Any of them may be null.
class SplitPane : public QWidget {
 public:
  SplitPane(View* upper, SplitterView* bar, View* lower);

  void Arrange();
  // Without the bar.
  int HeightToShare() const { return height() - SplitterView::kHeight; }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  View* upper_;
  SplitterView* bar_;
  View* lower_;
};

}  // namespace quorl
