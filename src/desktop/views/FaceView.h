// Buttons: a command, a lit toggle, one of several options, a picture to click.
#pragma once

#include <vector>

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

// A face with its caption. What the control is decides the rest: a CheckBox or OptionButton that is on is
// filled with its colour and has dark text; off, its colour is a thin border and the text.
class FaceView : public View {
 public:
  FaceView(RefreshClock& clock, CommandButton& button);
  FaceView(RefreshClock& clock, CheckBox& box);
  FaceView(RefreshClock& clock, OptionButton& option);

  // The faces of its group, this one among them: they are one stop for the Tab key, and arrow keys press the
  // neighbours.
  void SetGroup(const std::vector<FaceView*>& group);
  // Narrower than the other buttons, for a card's title row.
  void SetSmall();
  // Pixels that its caption needs; in less it is cut at its end.
  int LeastWidth() const;

  void TakeOver() override;
  // Any face can be given the keyboard, though Tab stops at one of a group.
  bool TakesKeys() const override { return true; }
  QAccessible::Role Role() const override;
  QString SpokenValue() const override;
  bool IsChecked() const override;
  bool CanPress() const override { return true; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  QString Caption() const override;
  bool OnKey(int code, Modifiers with) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  FaceView(RefreshClock& clock, Control& control);
  skin::ButtonLook Look(bool on) const;
  bool CanTakeKeys() const;
  void FindTabStop();
  FaceView* Neighbour(int direction) const;

  CommandButton* button_ = nullptr;
  CheckBox* box_ = nullptr;
  OptionButton* option_ = nullptr;
  std::vector<FaceView*> group_;
  bool small_ = false;
};

}  // namespace quorl
