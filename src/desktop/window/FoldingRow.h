// Buttons of one width side by side, in two rows where a caption wouldn't fit in one.
#pragma once

#include <QWidget>
#include <vector>

#include "desktop/views/FaceView.h"

namespace quorl {

// Those that are hidden leave their places to the others. A few of them stay as narrow as the sixth part.
class FoldingRow : public QWidget {
 public:
  explicit FoldingRow(const std::vector<FaceView*>& faces);

 protected:
  bool event(QEvent* event) override;

 private:
  void Arrange();

  std::vector<FaceView*> faces_;
};

}  // namespace quorl
