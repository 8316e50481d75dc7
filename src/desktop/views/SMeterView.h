// The S-meter: a bar of elements with its scale under it.
#pragma once

#include <QPixmap>
#include <string>
#include <vector>

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

// An element stands for 6 dB; nine of them make S9. The bar is as long as the panel shows elements.
class SMeterView : public View {
 public:
  static constexpr int kDecibelsPerElement = 6, kS9Decibels = 54;

  // `reading` may be null; its text is what a screen reader says.
  SMeterView(RefreshClock& clock, Picture& surface, std::vector<Control*> elements, Label* reading);

  int Lit() const;
  struct Mark {
    int Element;
    QRectF Place;
  };
  // The captions that the width has room for, S9 before all others.
  std::vector<Mark> Marks() const;
  QAccessible::Role Role() const override { return QAccessible::ProgressBar; }
  QString SpokenName() const override;
  QString SpokenValue() const override;
  std::optional<Range> SpokenRange() const override;  // elements
  bool IsText() const override { return true; }
  QSize sizeHint() const override { return {360, 60}; }
  QSize minimumSizeHint() const override { return {168, 60}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void TakeTones() override { backdrop_ = {}; }

 private:
  QString CaptionOf(std::size_t element) const;
  void PaintScale(QPainter& painter) const;
  void PaintHead(QPainter& painter) const;
  void RenewBackdrop();

  Picture& surface_;
  std::vector<Control*> elements_;
  Label* reading_;
  QPixmap backdrop_;
  std::string backdropCaption_;
};

}  // namespace quorl
