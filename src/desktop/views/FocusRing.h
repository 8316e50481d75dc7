// The ring around the control that has the keyboard.
#pragma once

#include <QPointer>
#include <QWidget>

namespace quorl {

// Two pixels of accent, above everything and outside of the control, so that nothing moves for it. It shows
// where the keyboard brought the focus, not where the mouse did.
class FocusRing : public QWidget {
 public:
  explicit FocusRing(QWidget* window);

  QWidget* Surrounded() const { return around_; }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void Surround(QWidget* widget);

  QPointer<QWidget> around_;
  bool byKeyboard_ = false;
};

}  // namespace quorl
