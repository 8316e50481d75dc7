// The IF filter: off, set by hand, or following the audio filter.
#pragma once

#include "interaction/PanelContext.h"

namespace quorl {

// chkIFFilter is the main switch: until it has been on for the first time (IFFilterActive clear), a click on
// optIFFilter is undone. From then on the two follow each other.
class IFFilterPanel {
 public:
  explicit IFFilterPanel(const PanelContext& context);

  Frame frIFFilter;
  OptionGroup optIFFilter;  // IFFilterMode
  CheckBox chkIFFilter;
  Label lblIFHi, lblIFLo;  // extents from the IF centre, hertz
  Label lblIFHiDesc, lblIFLoDesc;

  void chkIFFilter_Click();
  void optIFFilter_Click(int index);
  void lblIFHi_Wheel();
  void lblIFLo_Wheel();

 private:
  const FilterSettingsRecord& Record() const;
  void Show();
  void ShowEdges();
  void ShowLabels();

  PanelContext context_;
  const PublicVars& vars_;
  bool showing_ = false;  // the controls are being moved by code
  bool inIFHi_ = false, inIFLo_ = false;
  Listening listening_;
};

}  // namespace quorl
