#include "desktop/window/PanelRows.h"

#include "desktop/views/Skin.h"

namespace quorl {

QLabel* Caption(const QString& text) {
  auto* label = new QLabel(text);
  label->setFont(skin::WordFont());
  label->setForegroundRole(QPalette::PlaceholderText);
  label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  return label;
}

}  // namespace quorl
