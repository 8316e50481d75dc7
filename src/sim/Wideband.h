// Transmitters and nuisances that fill kilohertz: digital multicarrier, mains buzz, impulse noise.
#pragma once

#include <array>
#include <complex>
#include <cstdint>

#include "sim/Programme.h"

namespace quorl {

// The look and the sound of a digital broadcast: 206 carriers 46.875 Hz apart, 9.7 kHz in all, four-phase
// keyed, guard interval a fifth of the symbol of 26.67 ms, three steady pilots. It carries no programme.
class MulticarrierProgramme final : public Programme {
 public:
  explicit MulticarrierProgramme(std::uint64_t seed) : seed_(seed) {}
  int FramesPerChunk() const override { return kFastChunkFrames; }
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  static constexpr int kTransform = 512, kGuard = 128;
  void MakeSymbol(std::int64_t symbol);

  std::uint64_t seed_;
  std::int64_t symbol_ = -1;  // the one that `samples_` holds
  std::array<std::complex<float>, kTransform> samples_{};
};

// A switching supply or a bad insulator: noise that swells 100 times a second, some 3 kHz wide.
class BuzzProgramme final : public Programme {
 public:
  explicit BuzzProgramme(std::uint64_t seed) : seed_(seed) {}
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  std::uint64_t seed_;
};

// Sparks: a click of a fraction of a millisecond in most chunks of a burst, bursts of a second or two.
// Amplitude 1 is the click's peak.
class SparkProgramme final : public Programme {
 public:
  explicit SparkProgramme(std::uint64_t seed) : seed_(seed) {}
  int FramesPerChunk() const override { return kFastChunkFrames; }
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  std::uint64_t seed_;
};

// Complex Gaussian noise of mean power 1 (near enough: a sum of four equal distributions), any count of
// samples.
void RenderNoise(std::uint64_t seed, std::int64_t chunk, IqSpan out);

}  // namespace quorl
