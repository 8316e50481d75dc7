// The frequency: nine large figures, of which one is being tuned.
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
  QString SpokenName() const override;
  QChar Figure() const;

 protected:
  void OnClick(const MouseEvent& at) override { Shown().UserClick(at); }

 private:
  Label& digit_;
  int index_;
};

// Ten megahertz on the left, tenths of a hertz, smaller, on the right. Leading zeros are dimmed; the figure
// that the surface has chosen stands on a lit ground with a bar under it.
class FrequencyView : public View {
 public:
  static constexpr int kDigits = 9;
  static constexpr int kHeight = 64;  // of a figure

  // Some digits may be null.
  FrequencyView(RefreshClock& clock, FrequencyDisplay& surface, const std::array<Label*, kDigits>& digits);

  QAccessible::Role Role() const override { return QAccessible::SpinBox; }
  QString SpokenName() const override;
  QString SpokenValue() const override;               // "7085000.0 Hz"
  std::optional<Range> SpokenRange() const override;  // hertz
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  void Step(int steps) override;  // of the chosen figure
  int ChosenDigit() const;        // -1 for none
  DigitView* Digit(int index) const { return views_.at(static_cast<std::size_t>(index)); }

 protected:
  void OnClick(const MouseEvent&) override {}
  void OnMenuKey() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString Figures() const;

  FrequencyDisplay& surface_;
  std::array<Label*, kDigits> digits_;
  std::array<DigitView*, kDigits> views_{};
  NumeralCache numerals_;
};

}  // namespace quorl
