// The audio filter: five presets with movable edges, music, and the dynamic filter.
#pragma once

#include <array>

#include "interaction/PanelContext.h"

namespace quorl {

// Edges are moved by the labels lblFilterHi and lblFilterLo or by the two sliders, whose scale runs
// backwards: value = Max + Min - edge. Its right click goes back to the edge that the chosen filter came
// with.
class FilterPanel {
 public:
  static constexpr int kLow = 0, kHigh = 1;  // sldBW

  explicit FilterPanel(const PanelContext& context);

  Frame frFilters;
  OptionGroup optFilter;
  ControlArray<Slider> sldBW;
  Label lblFilterHi, lblFilterLo;  // hertz
  Label lblFHi, lblFLo;            // the same in words
  CheckBox chkMusic, chkDynFilter;

  // Takes that filter, 0 to 4.
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
  const FilterSettingsRecord& Record() const;
  void ConnectSliders();
  // What the receiver has, to buttons, labels, captions and sliders.
  void Show();
  void ShowEdges();
  std::int32_t SliderEdge(int index);
  void MoveSlider(int index, std::int32_t edge);

  PanelContext context_;
  const PublicVars& vars_;
  bool showing_ = false;  // the controls are being moved by code
  bool inFilterHi_ = false, inFilterLo_ = false;
  Listening listening_;
};

}  // namespace quorl
