// Choosing one of several: a field that opens its list, and a list that comes up by itself.
#pragma once

#include <QMenu>
#include <QPointer>

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

// A menu of the items with the chosen or marked one ticked; the caller owns it. Choosing goes to the control.
QMenu* MakeItemMenu(ComboBox& box, QWidget* parent);

class ChoiceView : public View {
 public:
  ChoiceView(RefreshClock& clock, ComboBox& box, int width);

  QAccessible::Role Role() const override { return QAccessible::ComboBox; }
  bool IsText() const override { return true; }
  bool CanPress() const override { return !box_.Items().empty(); }
  void Press() override;
  void Step(int steps) override;
  QSize sizeHint() const override { return {width_, 24}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool OnKey(int code, Modifiers with) override;
  bool OnWheel(int notches, Modifiers with) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  ComboBox& box_;
  int width_;
};

// The list of a box that its panel makes visible for one choice: it opens under the view of the control that
// the box stands beside, or else under `anchor`. Closing it without a choice is what the control hears as
// Escape and as the loss of the focus.
class PopupListView : public View {
 public:
  PopupListView(RefreshClock& clock, PopupBox& box, QWidget* anchor);
  ~PopupListView() override;

  QAccessible::Role Role() const override { return QAccessible::PopupMenu; }
  void TakeOver() override;

 private:
  void Open();

  PopupBox& box_;
  QPointer<QWidget> anchor_;
  QPointer<QMenu> menu_;
};

}  // namespace quorl
