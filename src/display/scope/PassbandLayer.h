// What is heard, shaded in the picture, with a line at zero beat.
#pragma once

#include "display/scope/ScopeContext.h"
#include "display/scope/ScopeOptions.h"

namespace quorl {

class PassbandLayer : public ScopeLayer {
 public:
  PassbandLayer(const ScopeContext& context, const ScopeOptions& options)
      : context_(context), options_(options) {}
  void Draw(Canvas& canvas, const ScopeFrame& frame) override;

 private:
  ScopeContext context_;
  const ScopeOptions& options_;
};

}  // namespace quorl
