#include "desktop/window/PanelRows.h"

#include "desktop/views/Skin.h"

namespace quorl {

QLabel* Caption(const QString& text) {
  auto* label = new QLabel(text);
  label->setFont(skin::WordFont());
  QPalette palette = label->palette();
  palette.setColor(QPalette::WindowText, QColor(skin::kQuietInk));
  label->setPalette(palette);
  label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  return label;
}

}  // namespace quorl
