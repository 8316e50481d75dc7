// Transmitters of audio: amplitude, single sideband and frequency modulation, and a bare carrier.
#pragma once

#include <memory>
#include <vector>

#include "sim/Audio.h"
#include "sim/Programme.h"

namespace quorl {

class AmProgramme final : public Programme {
 public:
  // `depth` 0 to 1: modulation at audio peaks of 1.
  AmProgramme(std::shared_ptr<const Audio> audio, double depth)
      : audio_(std::move(audio)), depth_(static_cast<float>(depth)) {}
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  std::shared_ptr<const Audio> audio_;
  float depth_;
};

class SsbProgramme final : public Programme {
 public:
  SsbProgramme(std::shared_ptr<const Audio> audio, bool upper) : audio_(std::move(audio)), upper_(upper) {}
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  std::shared_ptr<const Audio> audio_;
  bool upper_;
};

class CarrierProgramme final : public Programme {
 public:
  void Render(std::int64_t chunk, IqSpan out) override;
};

// The phase of one whole cycle is summed up beforehand, so that any chunk can be had at once; the cycle's
// mean is taken out, so that its end meets its beginning.
class FmProgramme final : public Programme {
 public:
  // `cycleChunks` of `audio` make the loop; `deviationHz` is reached at audio peaks of 1.
  FmProgramme(const Audio& audio, std::int64_t cycleChunks, double deviationHz);
  int FramesPerChunk() const override { return kFastChunkFrames; }
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  float PhaseAt(std::int64_t sample) const;
  std::vector<float> phase_;  // radians, one a sample of 8000 Hz
};

}  // namespace quorl
