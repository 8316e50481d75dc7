// A bar that tells how loud something is, as a picture with its text beside it.
#pragma once

#include <vector>

#include "controls/Controls.h"

namespace quorl {

class LevelBar : public Picture {
 public:
  using Picture::Picture;

  Property<double> Level{*this, 0.0};          // 0 to 1 of its length
  Property<std::vector<double>> Bands{*this};  // where its bands begin, rising: low, right, high
};

}  // namespace quorl
