// A floating panel beside a memory's button that tells what is in it.
#pragma once

#include <string>

#include "controls/Controls.h"
#include "display/canvas/FloatingLabel.h"
#include "interaction/PanelContext.h"
#include "memories/BandPlan.h"

namespace quorl {

class HintPanel {
 public:
  explicit HintPanel(ControlRegistry& registry);

  Frame frmPresetDesc;  // hidden to begin with
  Label lblCaption;
  FloatingLabel lblPresetDesc;  // with the caption as its heading
  bool ShowPresetHints = false;

  // The Ctrl key: wanted, or not any more.
  void Toggle();
  void Hide();
  // Beside `button`, where the pointer is within it; nothing where hints aren't wanted.
  void Show(const Preset& preset, const Control& button, const MouseEvent& at);
  void Show(const SubBand& band, const Control& button, const MouseEvent& at);

  // Says something about a button whether hints are wanted or not, until the pointer goes elsewhere.
  void Say(const std::string& text, const Control& button);

 private:
  void Place(const Control& button, const MouseEvent& at);
  void Open(const std::string& caption, const std::string& text, const Control& button, const MouseEvent& at);
  void SetVisible(bool visible);
};

}  // namespace quorl
