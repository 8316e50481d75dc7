// A card of the panel: a quiet ground with a title, the place of a frame.
#pragma once

#include <QBoxLayout>

#include "controls/Controls.h"
#include "desktop/views/View.h"

namespace quorl {

// Title and edge take the frame's colour, so that the card under the pointer shows in the focus colour.
class CardView : public View {
 public:
  // Beside: left of the only row. Flat: neither title nor ground nor edge, within another card, where it
  // keeps its place while it is hidden.
  enum class Title { Shown, Beside, None, Flat };

  // `title` stands where the frame has no caption.
  CardView(RefreshClock& clock, Frame& frame, const QString& title, Title shown = Title::Shown);

  // The row of the title; what is added stands at its right end. Null for a card without a title.
  QHBoxLayout* TitleRow() const { return titleRow_; }
  // A new row under what is there; with a stretch it takes the height that is left.
  QHBoxLayout* AddRow(int stretch = 0);
  void TakeOver() override;
  QAccessible::Role Role() const override { return QAccessible::Grouping; }
  QString SpokenName() const override;
  QString SpokenValue() const override { return {}; }

 protected:
  void OnClick(const MouseEvent& at) override { Shown().UserClick(at); }
  void TakeTones() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString TitleText() const;

  Frame& frame_;
  QString title_;
  Title shown_;
  QColor ground_, edge_, ink_;
  QVBoxLayout* rows_;
  QHBoxLayout* titleRow_ = nullptr;
};

}  // namespace quorl
