// The frequency: nine large figures, of which one is being tuned, and a tenth where it is needed.
#pragma once

#include <array>

#include "controls/Controls.h"
#include "desktop/views/Numerals.h"
#include "desktop/views/View.h"

namespace quorl {

// Takes the pointer and the wheel for one figure; FrequencyView paints it.
class DigitView : public View {
 public:
  DigitView(RefreshClock& clock, Label& digit, int index);

  void TakeOver() override;
  QAccessible::Role Role() const override { return QAccessible::SpinBox; }
  QString SpokenName() const override;
  std::optional<Range> SpokenRange() const override;  // none while it is dark
  void SetSpoken(double value) override;              // the other figures stay
  bool CanPress() const override { return bool(digit_.Click); }
  bool IsText() const override { return true; }
  // Whether the keyboard tunes by it.
  bool HasKeyboard() const;
  QChar Figure() const;

 protected:
  void OnClick(const MouseEvent& at) override { Shown().UserClick(at); }

 private:
  Label& digit_;
  int index_;
};

// Ten megahertz on the left (above 99.9999999 MHz a hundred, which takes no gestures), tenths of a hertz,
// smaller, on the right. Leading zeros are dimmed; the figure that the surface has chosen stands on a lit
// ground with a bar under it.
class FrequencyView : public View {
 public:
  static constexpr int kDigits = 9;
  static constexpr int kHeight = 64;  // of a figure

  // `top` is the figure of 100 MHz. It and some digits may be null.
  FrequencyView(RefreshClock& clock, FrequencyDisplay& surface, const std::array<Label*, kDigits>& digits,
                Label* top);

  void TakeOver() override;
  QAccessible::Role Role() const override { return QAccessible::SpinBox; }
  QString SpokenName() const override;
  QString SpokenValue() const override;               // "7085000.0 Hz"
  std::optional<Range> SpokenRange() const override;  // hertz
  bool IsText() const override { return true; }
  View* FocusedPart() const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  void Step(int steps) override;  // of the chosen figure
  int ChosenDigit() const;        // -1 for none
  DigitView* Digit(int index) const { return views_.at(static_cast<std::size_t>(index)); }
  // Tunes to what stands there with that figure, 0 to 9, in the place of `index`.
  void SetFigure(int index, int figure);

 protected:
  void OnClick(const MouseEvent&) override {}
  void OnMenuKey() override;
  void focusInEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString Figures() const;
  bool ShowsTop() const { return top_ && top_->Visible(); }
  void PlaceDigits();
  void PaintChosen(QPainter& painter, const QRectF& strip, const QColor& ink) const;
  void PaintFigure(QPainter& painter, QChar figure, const QRectF& strip, double height, const QColor& ink,
                   bool lit);
  QColor InkOf(const Label& digit) const;
  void SpeakFocus();

  FrequencyDisplay& surface_;
  std::array<Label*, kDigits> digits_;
  std::array<DigitView*, kDigits> views_{};
  Label* top_;
  bool showsTop_ = false;
  NumeralCache numerals_;
  int spokenDigit_ = -1;
};

}  // namespace quorl
