// The part of the band, or of the block, that the scope shows.
#pragma once

#include "config/SettingsTable.h"
#include "display/scope/ScopeContext.h"

namespace quorl {

// Centre and width count bins of the spectrum, or samples of the time window; with the whole of a complex
// spectrum on display, two bins each.
class ScopeWindow {
 public:
  explicit ScopeWindow(const ScopeContext& context);

  Slider sldXCentre, sldXWidth;
  Label lblScopeXCentre, lblScopeXWidth;

  void sldXCentre_Change();
  void sldXWidth_Change();
  void lblScopeXCentre_Wheel();
  void lblScopeXWidth_Wheel();

  // Shows what the mode has a use for.
  void ShowMode(std::int32_t mode);
  // Widens (above 1) or narrows the window; what lies at `share` of the picture's width stays there.
  void Zoom(double factor, double share);
  // Moves the window by a share of its width, to the right above 0.
  void Pan(double share) { MoveTo(Start() + share * Width()); }
  // The left edge and the width, in steps of the sliders.
  double Start() const { return context_.Analyser.StartX / static_cast<double>(BinsPerStep()); }
  int Width() const;
  void MoveTo(double start) { Place(start, Width()); }
  // The tool tip of the centre, for another tuned frequency.
  void ShowCentre();
  // Bins for each step of centre and width.
  int BinsPerStep() const { return context_.Analyser.TwoSidedInForce() ? 2 : 1; }
  void AddSettings(SettingsTable& table);

 private:
  int Range() const { return sldXWidth.Max() - sldXWidth.Min(); }
  void Take();
  void Place(double start, int width);
  void ShowEntry(int index, int value);

  ScopeContext context_;
  bool moving_ = false;  // both sliders are being set
};

}  // namespace quorl
