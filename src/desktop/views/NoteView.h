// A few words that come up over the panel, and go by themselves.
#pragma once

#include <QPointer>
#include <QTimer>

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

// Stands under `anchor`, over whatever is there, while the label is visible, but no longer than a few
// seconds. It takes no gestures. A screen reader hears it when it comes.
class NoteView : public View {
 public:
  NoteView(RefreshClock& clock, Label& label, QWidget* anchor);

  QAccessible::Role Role() const override { return QAccessible::AlertMessage; }
  QString SpokenName() const override { return Words(); }
  void TakeOver() override;
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString Words() const { return QString::fromStdString(label_.Caption()); }

  Label& label_;
  QPointer<QWidget> anchor_;
  QTimer rest_;
};

}  // namespace quorl
