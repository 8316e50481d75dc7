// Sample rates by libsamplerate.
#pragma once

#include <samplerate.h>

#include <memory>

#include "platform/SoundFiles.h"

namespace quorl {

class SamplerateConverter final : public RateConverter {
 public:
  static std::unique_ptr<SamplerateConverter> Create(int from, int to, Failure& failure);

  Failure Convert(std::span<const float> in, bool last, std::vector<float>& out) override;

 private:
  struct Closer {
    void operator()(SRC_STATE* state) const { src_delete(state); }
  };
  SamplerateConverter(SRC_STATE* state, double ratio) : state_(state), ratio_(ratio) {}

  std::unique_ptr<SRC_STATE, Closer> state_;
  double ratio_;
};

}  // namespace quorl
