// The IF filter: off, set by hand, or following the audio filter.
#pragma once

#include "reception/PanelContext.h"

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

  std::int32_t IFHi = 0, IFLo = 0;  // last values of the edge controls

  void chkIFFilter_Click();
  void optIFFilter_Click(int index);
  void lblIFHi_Wheel();
  void lblIFLo_Wheel();

  // The audio filter has changed: its edges are the IF filter's, where that one tracks.
  void FollowFilter();
  // Another demodulation mode has another record of edges.
  void FollowDemodMode();

 private:
  struct Edge {
    std::int32_t Value, Default;
  };
  FilterSettingsRecord& Record();
  const FilterSettingsRecord& AudioRecord() const;
  void TakeEdges(Edge high, Edge low);
  void TakeManualEdges();
  void TakeTrackedEdges();
  Edge TrackedHigh() const;
  Edge TrackedLow() const;
  void ShowLabels();

  PanelContext context_;
  PublicVars& vars_;
  bool inChkIFFilter_ = false, inOptIFFilter_ = false;
  bool inIFHi_ = false, inIFLo_ = false;
};

}  // namespace quorl
