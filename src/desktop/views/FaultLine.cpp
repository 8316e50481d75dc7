#include "desktop/views/FaultLine.h"

#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

FaultLine::FaultLine(Control& control) : control_(control) {
  setFont(skin::WordFont());
  setWordWrap(true);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  hide();
  following_ = control.OnChanged.Listen([this] { Follow(); });
  Follow();
}

void FaultLine::Follow() {
  const QString text = QString::fromStdString(control_.Fault());
  if (text == this->text() && isHidden() == text.isEmpty()) return;
  setText(text);
  setVisible(!text.isEmpty());
}

void FaultLine::paintEvent(QPaintEvent*) {
  const QPalette now = palette();
  const skin::Tones tones(now);
  QPainter painter(this);
  painter.setPen(tones.Text(tones.Over()));
  painter.drawText(rect(), static_cast<int>(Qt::AlignLeft | Qt::AlignTop) | Qt::TextWordWrap, text());
}

}  // namespace quorl
