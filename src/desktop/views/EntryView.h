// A line to type into, over another view while its control is visible.
#pragma once

#include <QPointer>

#include "desktop/views/FieldViews.h"

namespace quorl {

// Takes the keyboard when it comes, and gives it back when it goes. Enter, Escape and the arrows are the
// control's KeyDown; leaving the line is its LostFocus. What the panel has to say against the text (its tool
// tip) shows at once.
class EntryView : public TextView {
 public:
  EntryView(RefreshClock& clock, TextBox& text, QWidget* anchor);

  void TakeOver() override;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void Come();

  QPointer<QWidget> anchor_, before_;  // before: what had the keyboard
  QString told_;
};

}  // namespace quorl
