#include "desktop/window/FoldingRow.h"

#include <QEvent>
#include <algorithm>

namespace quorl {

namespace {

constexpr int kGap = 4, kHeight = 20, kLeastColumns = 6;

}  // namespace

FoldingRow::FoldingRow(const std::vector<FaceView*>& faces) : faces_(faces) {
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  for (FaceView* face : faces_) {
    face->SetSmall();
    face->setParent(this);
  }
  setFixedHeight(kHeight);
}

bool FoldingRow::event(QEvent* event) {
  const bool result = QWidget::event(event);
  const QEvent::Type type = event->type();
  if (type == QEvent::Resize || type == QEvent::Show || type == QEvent::LayoutRequest) Arrange();
  return result;
}

void FoldingRow::Arrange() {
  std::vector<FaceView*> shown;
  int widest = 0;
  for (FaceView* face : faces_) {
    if (face->isHidden()) continue;
    shown.push_back(face);
    widest = std::max(widest, face->LeastWidth());
  }
  const int across = width() + kGap;
  int columns = std::max(kLeastColumns, static_cast<int>(shown.size()));
  const bool folds = across / columns - kGap < widest && columns > kLeastColumns;
  if (folds) columns = (columns + 1) / 2;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const int column = static_cast<int>(i) % columns, row = static_cast<int>(i) / columns;
    const int left = across * column / columns, right = across * (column + 1) / columns;
    shown[i]->setGeometry(left, row * (kHeight + kGap), right - left - kGap, kHeight);
  }
  setFixedHeight(folds ? 2 * kHeight + kGap : kHeight);
}

}  // namespace quorl
