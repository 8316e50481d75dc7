// A few words that follow the pointer over a picture or a button.
#pragma once

#include "controls/Controls.h"

namespace quorl {

// The view tells its size (SetPlace), so that the panel can keep it within the picture.
class FloatingLabel : public Label {
 public:
  using Label::Label;
  Property<std::string> Heading{*this};           // above the caption, whose lines end in line feeds
  Property<const Control*> Over{*this, nullptr};  // the picture
  Property<int> Left{*this, 0}, Top{*this, 0};    // of its corner, in pixels of the picture
};

}  // namespace quorl
