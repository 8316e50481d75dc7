// The pointer over spectrum and waterfall: the frequency under it, what a click and the wheel tune.
#pragma once

#include <array>
#include <vector>

#include "display/canvas/FloatingLabel.h"
#include "display/scope/ScopeContext.h"
#include "display/scope/ScopeGrip.h"
#include "display/scope/ScopeOptions.h"
#include "display/scope/ScopeWindow.h"

namespace quorl {

class ScopePointer {
 public:
  // All of it is used as long as the pointer lives.
  ScopePointer(const ScopeContext& context, const ScopeOptions& options, ScopeWindow& window,
               CanvasPicture& scope, CanvasPicture& waterfall);

  FloatingLabel lblSpectrumFreq;

  // The wheel over the pictures tunes, the faster the lower the pointer is; otherwise it zooms.
  bool WheelTunes() const { return wheelTunes_; }
  void SetWheelTunes(bool tunes);
  // Asked in this order when the left or the middle button goes down; used as long as they are listed.
  std::vector<ScopeGrip*> Grips;
  // Told each place that the pointer comes to with no hold of anything. May be empty.
  std::function<void(const ScopePlace&)> OnHover;
  // The right button. May be empty.
  std::function<void()> OnMenu;

  // The pointer rests on one of the pictures.
  bool IsOver() const { return over_ != nullptr; }
  // Whether the scale is a radio frequency that can be tuned to.
  bool IsTunable() const;
  // What is under a resting pointer may have changed.
  void Renew();
  ScopePlace PlaceOf(const CanvasPicture& picture, const MouseEvent& at) const;

  void picScope_MouseMove(CanvasPicture& picture, const MouseEvent& at);
  void picScope_MouseDown(CanvasPicture& picture, const MouseEvent& at);
  void picScope_Wheel(CanvasPicture& picture, int notches, const MouseEvent& at);

 private:
  void Connect(CanvasPicture& picture);
  void TakeStep(double share);
  void TakeFrequency(CanvasPicture& picture);
  void ShowFrequency();
  void PlaceFrequency();
  void Tune(const ScopePlace& place);
  void picScope_Step();

  ScopeContext context_;
  const ScopeOptions& options_;
  ScopeWindow& window_;
  bool wheelTunes_ = false;
  CanvasPicture* over_ = nullptr;  // the picture that the pointer rests on
  MouseEvent at_;                  // where
  ScopeGrip* held_ = nullptr;
  Listening sized_;
};

}  // namespace quorl
