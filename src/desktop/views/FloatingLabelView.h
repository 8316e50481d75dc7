// A few words beside the pointer, over a picture.
#pragma once

#include <QPointer>
#include <QStringList>

#include "desktop/views/DrawnNumber.h"
#include "desktop/views/View.h"
#include "display/canvas/FloatingLabel.h"

namespace quorl {

// Takes no gestures. Where the pointer has left the picture it goes, until the label comes to another place.
class FloatingLabelView : public View {
 public:
  FloatingLabelView(RefreshClock& clock, FloatingLabel& label, QWidget* anchor);

  QAccessible::Role Role() const override { return QAccessible::ToolTip; }
  QString SpokenName() const override { return Words(); }
  void TakeOver() override;
  QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString Words() const { return QString::fromStdString(label_.Caption()); }
  QStringList Lines() const;
  QPoint Corner() const { return {label_.Left(), label_.Top()}; }
  QPoint Place(const QWidget& window) const;
  void StandOver(QWidget* picture);

  FloatingLabel& label_;
  DrawnNumber words_;
  QPointer<QWidget> anchor_, over_;  // over: the picture that it stands over
  QPoint leftAt_;
  bool left_ = false;  // by the pointer
};

}  // namespace quorl
