// A slider with marks along its way, such as where the tracks of a recording begin.
#pragma once

#include <vector>

#include "controls/Controls.h"

namespace quorl {

class MarkedSlider : public Slider {
 public:
  using Slider::Slider;

  Property<std::vector<int>> Marks{*this};  // values, rising
};

}  // namespace quorl
