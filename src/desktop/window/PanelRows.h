// What the regions of the panel put their rows together with. What was not bound is left out.
#pragma once

#include <QBoxLayout>
#include <QLabel>
#include <vector>

#include "desktop/views/FaceView.h"
#include "desktop/views/LabelView.h"

namespace quorl {

inline void Put(QBoxLayout* row, QWidget* widget, int stretch = 0) {
  if (widget) row->addWidget(widget, stretch);
}

inline void Put(QBoxLayout* row, const std::vector<FaceView*>& views) {
  for (FaceView* view : views) Put(row, view, 1);
}

// A quiet word that is no control.
QLabel* Caption(const QString& text);

inline FaceView* Small(FaceView* view) {
  if (view) view->SetSmall();
  return view;
}

// As wide as there is room, whatever it says.
inline LabelView* AsRoomAllows(LabelView* label) {
  if (label) label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  return label;
}

inline LabelView* In(const QString& unit, LabelView* value) {
  if (value) value->SetUnit(unit);
  return value;
}

}  // namespace quorl
