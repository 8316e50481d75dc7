#include "interaction/PanelColours.h"

namespace quorl {

PanelColours::PanelColours(const ControlRegistry& registry, const ColourSchemes& scheme,
                           ScrollableControls& scrollables)
    : registry_(registry), scheme_(scheme), scrollables_(scrollables), labels_(scheme.SDRLabelColour) {}

void PanelColours::Add(Frame& frame) {
  frames_.push_back(&frame);
  frame.ForeColour = scheme_.SDRFrameNormalColour;
  frame.MouseMove = [this, &frame] { Frame_MouseMove(frame); };
}

void PanelColours::UnFocusFrames() {
  for (Frame* frame : frames_) frame->ForeColour = scheme_.SDRFrameNormalColour;
}

void PanelColours::Frame_MouseMove(Frame& frame) {
  Form_MouseMove();
  frame.ForeColour = scheme_.SDRFrameFocusColour;
}

void PanelColours::Form_MouseMove() {
  scrollables_.DarkenControls();
  UnFocusFrames();
}

void PanelColours::ReColour() {
  for (Control* control : registry_.All()) {
    if (auto* label = dynamic_cast<Label*>(control)) {
      label->BackColour = scheme_.SDRBackgroundColour;
      const Colour ink = label->ForeColour();
      if (ink == kNoColour || ink == labels_) label->ForeColour = scheme_.SDRLabelColour;
    } else if (auto* picture = dynamic_cast<Picture*>(control)) {
      picture->BackColour = scheme_.SDRBackgroundColour;
    } else if (auto* button = dynamic_cast<CommandButton*>(control)) {
      button->ForeColour = scheme_.SDRLabelColour;
    }
  }
  labels_ = scheme_.SDRLabelColour;
  UnFocusFrames();
  scrollables_.ReColour();
  for (const auto& repaint : repaints_) repaint();
}

void PaintButtons(OptionGroup& group, int chosen) {
  for (int i = 0; i < group.Count(); ++i) PaintToggle(group(i), i == chosen);
}

void Fade(OptionGroup& group, bool faded) {
  for (int i = 0; i < group.Count(); ++i) group(i).Faded = faded;
}

void PaintToggle(Control& button, bool on) {
  button.BackColour = on ? kSelectedColour : kUnselectedColour;
}

void BindToggle(CheckBox& box, std::function<void()> onClick) {
  PaintToggle(box, box.Value());
  box.Click = [&box, handler = std::move(onClick)] {
    PaintToggle(box, box.Value());
    handler();
  };
}

}  // namespace quorl
