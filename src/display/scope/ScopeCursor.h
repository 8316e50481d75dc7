// A cursor in the picture: what lies under it, in words, and the keys' way to tune there.
#pragma once

#include <optional>
#include <string>

#include "display/scope/ScopeContext.h"
#include "display/scope/ScopeGrip.h"
#include "display/scope/ScopeOptions.h"

namespace quorl {

// What the waterfall shows at a place.
struct PastPoint {
  std::string Time;
  std::optional<float> Level;  // dB below a full-scale sine
};

// It stands on a bin of the spectrum, or on a sample of the block, and follows the pointer.
class ScopeCursor : public ScopeLayer {
 public:
  ScopeCursor(const ScopeContext& context, const ScopeOptions& options);

  Label lblScopeCursor;

  // The pointer has come to a place of the picture.
  void Follow(const ScopePlace& place);
  void lblScopeCursor_Wheel();
  // Tunes to where it stands; it stays on that station.
  void Tune();
  // Another mode or option.
  void ShowMode();
  // Words for what is under it now.
  void Periodic();
  // What the waterfall shows at a place, empty elsewhere. May be empty itself.
  std::function<std::optional<PastPoint>(const ScopePlace&)> PastAt;
  void Draw(Canvas& canvas, const ScopeFrame& frame) override;

 private:
  void Place(double bin);
  void Tell();
  std::string FrequencyText() const;
  std::string SampleText() const;

  ScopeContext context_;
  const ScopeOptions& options_;
  double bin_ = 0;
  std::optional<ScopePlace> place_;  // of the pointer, unless the keys have moved the cursor since
  std::optional<PastPoint> past_;    // what the waterfall shows there
  int ticks_ = 0;
};

}  // namespace quorl
