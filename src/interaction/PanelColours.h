// Which frame has the pointer, and the painting of the whole panel in the user's colours.
#pragma once

#include <functional>
#include <vector>

#include "config/ColourSchemes.h"
#include "controls/ControlRegistry.h"
#include "controls/Controls.h"
#include "interaction/ScrollableControls.h"

namespace quorl {

class PanelColours {
 public:
  // All three are used as long as the object lives.
  PanelColours(const ControlRegistry& registry, const ColourSchemes& scheme, ScrollableControls& scrollables);

  const ColourSchemes& Scheme() const { return scheme_; }

  // The frame lights up under the pointer. Frames live as long as this object is used.
  void Add(Frame& frame);

  // All frames in their normal colour.
  void UnFocusFrames();
  // The pointer moved over the frame: nothing is active any more, and this frame is the one.
  void Frame_MouseMove(Frame& frame);
  // The pointer left all frames for the bare panel.
  void Form_MouseMove();

  // Paints frames, labels, command buttons and pictures in the colours of their kind, then the scrollable
  // labels, then what has colours of its own kind (AddRepaint). Check boxes and option buttons keep theirs,
  // and so does a label that carries a state in its colour, such as a warning.
  void ReColour();
  void AddRepaint(std::function<void()> repaint) { repaints_.push_back(std::move(repaint)); }

 private:
  const ControlRegistry& registry_;
  const ColourSchemes& scheme_;
  ScrollableControls& scrollables_;
  std::vector<Frame*> frames_;
  Colour labels_;  // what labels without a state were last painted in
  std::vector<std::function<void()>> repaints_;
};

// The ground of a group's buttons: `chosen` selected, the others not; -1 for none.
void PaintButtons(OptionGroup& group, int chosen);
// A group whose choice is without effect at present looks switched off, the pressed button too.
void Fade(OptionGroup& group, bool faded);
// The ground of a button that is on or off.
void PaintToggle(Control& button, bool on);
// Paints a check box at each change of its value, then calls the handler.
void BindToggle(CheckBox& box, std::function<void()> onClick);

}  // namespace quorl
