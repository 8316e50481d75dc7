// The audio filter: five presets with movable edges, music, and the dynamic filter.
#pragma once

#include <array>

#include "dsp/chain/VariableFilters.h"
#include "reception/IFFilterPanel.h"
#include "reception/PanelContext.h"

namespace quorl {

// Edges are moved by the labels lblFilterHi and lblFilterLo or by the two sliders, whose scale runs
// backwards: value = Max + Min - edge. A slider's tag holds the edge that the chosen filter came with.
class FilterPanel {
 public:
  static constexpr std::int32_t kMusicLow = 50;  // Hz: how far down a filter reaches for music
  static constexpr int kLow = 0, kHigh = 1;      // sldBW
  // For optFilter_Click: only spread the edges in force, or go back to those in the tags first.
  static constexpr int kKeepEdges = -1, kTaggedEdges = -2;

  FilterPanel(const PanelContext& context, VariableFilters& filterMaker, IFFilterPanel& ifFilterPanel);

  Frame frFilters;
  OptionGroup optFilter;
  ControlArray<Slider> sldBW;
  Label lblFilterHi, lblFilterLo;  // hertz
  Label lblFHi, lblFLo;            // the same in words
  CheckBox chkMusic, chkDynFilter;

  // 0 to 4 takes that filter with its edges; kKeepEdges, kTaggedEdges.
  void optFilter_Click(int index);
  void chkMusic_Click();
  void chkDynFilter_Click();
  void sldBW_Change(int index);
  void sldBW_MouseDown(int index, MouseButton button);
  void lblFilterHi_Wheel();
  void lblFilterLo_Wheel();
  // A speech filter's edges in the captions, until those in force are known.
  void ShowDefaults();

 private:
  FilterSettingsRecord& Record();
  void TakeRecord();
  // Edges in force to labels, captions and sliders.
  void ShowEdges();
  std::int32_t SliderEdge(int index);
  void MoveSlider(int index, std::int32_t edge);

  PanelContext context_;
  PublicVars& vars_;
  VariableFilters& filterMaker_;
  IFFilterPanel& ifFilterPanel_;
  bool inOptFilter_ = false, inMusic_ = false, inSlider_ = false;
  bool inFilterHi_ = false, inFilterLo_ = false;
};

}  // namespace quorl
