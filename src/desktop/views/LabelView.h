// Labels: a word beside something, or a number that wheel and keys turn.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/DrawnNumber.h"
#include "desktop/views/View.h"

namespace quorl {

enum class LabelStyle {
  Word,    // quiet, as wide as its text
  Value,   // a number that the user turns
  Reading  // a number to look at
};

class LabelView : public View {
 public:
  // `widest` is the longest text that the label will ever show; the place it takes never changes.
  LabelView(RefreshClock& clock, Label& label, LabelStyle style, const QString& widest = {}, int pixels = 0);

  void SetAlignment(Qt::Alignment alignment) { alignment_ = alignment; }
  // Stands after a left-aligned number, shown and spoken.
  void SetUnit(const QString& unit);
  // Stands before the number, and goes with it; not spoken.
  void SetName(const QString& name);
  // Stands in place of a caption that says more than there is room for; the ink stays the label's.
  void SetWord(const QString& word);
  QAccessible::Role Role() const override;
  QString SpokenName() const override;
  QString SpokenValue() const override;
  std::optional<Range> SpokenRange() const override;  // of a number that is turned
  bool IsText() const override { return true; }
  bool CanPress() const override { return bool(label_.Click); }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void OnClick(const MouseEvent& at) override { Shown().UserClick(at); }
  bool OnKey(int code, Modifiers with) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString Words() const;
  int NameWidth() const;
  double WidthOf(const QString& text) const;
  QColor Ink() const;

  Label& label_;
  LabelStyle style_;
  QString widest_, unit_, word_, name_;
  int pixels_;
  DrawnNumber number_;
  mutable QSize hint_;  // of the widest text, which never changes
  Qt::Alignment alignment_ = Qt::AlignLeft;
};

}  // namespace quorl
