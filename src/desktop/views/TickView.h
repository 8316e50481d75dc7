// A box to tick, with its words beside it: for dialogs, where a lit face for each option would be loud.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

class TickView : public View {
 public:
  TickView(RefreshClock& clock, CheckBox& box);

  QAccessible::Role Role() const override { return QAccessible::CheckBox; }
  QString SpokenValue() const override;
  bool IsChecked() const override { return box_.Value(); }
  bool CanPress() const override { return true; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  QString Caption() const override { return QString::fromStdString(box_.Caption()); }
  bool OnKey(int code, Modifiers with) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  CheckBox& box_;
};

}  // namespace quorl
