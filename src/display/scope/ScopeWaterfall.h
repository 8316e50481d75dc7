// The waterfall's picture under the spectrum: fed with its lines, drawn with its frames, scrolled by its time
// axis.
#pragma once

#include <optional>
#include <string>

#include "display/scope/ScopeContext.h"
#include "display/scope/ScopeCursor.h"
#include "display/scope/ScopeGrip.h"
#include "display/scope/ScopeOptions.h"
#include "display/waterfall/Waterfall.h"
#include "platform/Clock.h"

namespace quorl {

class ScopeWaterfall : public ScopeGrip {
 public:
  // All of it is used as long as this lives.
  ScopeWaterfall(const ScopeContext& context, const ScopeOptions& options, CanvasPicture& picture,
                 const Clock& clock);

  const Waterfall& Shown() const { return waterfall_; }
  // What the options and the levels' ends ask for.
  void Apply();
  void Add(const SpectrumLine& line);
  // The next picture, on the surface that isn't seen.
  void Redraw();
  // What the picture shows at a place of it; empty elsewhere.
  std::optional<PastPoint> At(const ScopePlace& place) const;

  // The left button on the time axis scrolls; a double click goes back to the present.
  bool Press(const ScopePlace& place) override;
  void Drag(const ScopePlace& place) override;

 private:
  bool IsOnAxis(const ScopePlace& place) const;

  ScopeContext context_;
  const ScopeOptions& options_;
  CanvasPicture& picture_;
  const Clock& clock_;
  Waterfall waterfall_;
  bool front_ = false;  // the surface that was drawn last
  double from_ = 0;
  std::int64_t scrolled_ = 0;  // lines since the press
};

}  // namespace quorl
