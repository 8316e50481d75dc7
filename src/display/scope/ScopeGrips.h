// What can be dragged in the pictures: the window over the band, the band under its labels, the edges of what
// is heard.
#pragma once

#include <optional>

#include "display/scope/ScopeContext.h"
#include "display/scope/ScopeGrip.h"
#include "display/scope/ScopeOptions.h"
#include "display/scope/ScopePassband.h"
#include "display/scope/ScopeWindow.h"

namespace quorl {

// The middle button moves the window.
class WindowGrip : public ScopeGrip {
 public:
  WindowGrip(const ScopeOptions& options, ScopeWindow& window) : options_(options), window_(window) {}
  bool Press(const ScopePlace& place) override;
  void Drag(const ScopePlace& place) override;

 private:
  const ScopeOptions& options_;
  ScopeWindow& window_;
  double start_ = 0, from_ = 0;
};

// The left button on the frequency labels pulls the band along with the pointer.
class BandGrip : public ScopeGrip {
 public:
  BandGrip(const ScopeContext& context, const ScopeOptions& options) : context_(context), options_(options) {}
  bool Press(const ScopePlace& place) override;
  void Drag(const ScopePlace& place) override;
  bool Release() override { return moved_; }
  // The frequency that the pull has come to goes out with the tick of the tuning timer, as each takes its
  // time on the wire.
  void Periodic();

 private:
  ScopeContext context_;
  const ScopeOptions& options_;
  double from_ = 0;         // share of the width
  std::int32_t tuned_ = 0;  // dHz, when it began
  bool moved_ = false;
  std::optional<std::int32_t> wanted_;
};

// The left button within a few pixels of an edge moves it, through its entry in the table.
class EdgeGrip : public ScopeGrip {
 public:
  EdgeGrip(const ScopeContext& context, const ScopeOptions& options) : context_(context), options_(options) {}
  bool Press(const ScopePlace& place) override;
  void Drag(const ScopePlace& place) override;

 private:
  ScopeContext context_;
  const ScopeOptions& options_;
  BandEdge edge_;
};

}  // namespace quorl
