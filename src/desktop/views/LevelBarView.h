// A level as a bar with its bands.
#pragma once

#include "controls/LevelBar.h"
#include "desktop/views/View.h"

namespace quorl {

class LevelBarView : public View {
 public:
  LevelBarView(RefreshClock& clock, LevelBar& bar);

  QAccessible::Role Role() const override { return QAccessible::ProgressBar; }
  std::optional<Range> SpokenRange() const override;  // percent of its length
  bool IsText() const override { return true; }
  QSize sizeHint() const override { return {200, 16}; }
  QSize minimumSizeHint() const override { return {80, 16}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  LevelBar& bar_;
};

}  // namespace quorl
