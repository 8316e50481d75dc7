#include "sim/Modulators.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace quorl {

void AmProgramme::Render(std::int64_t chunk, IqSpan out) {
  audio_->Render(chunk, out);
  for (int n = 0; n < out.Count; ++n) {
    out.I[n] = 1.0F + depth_ * out.I[n];
    out.Q[n] = 0.0F;
  }
}

void SsbProgramme::Render(std::int64_t chunk, IqSpan out) {
  audio_->Render(chunk, out);
  if (upper_) return;
  for (int n = 0; n < out.Count; ++n) out.Q[n] = -out.Q[n];
}

void CarrierProgramme::Render(std::int64_t /*chunk*/, IqSpan out) {
  std::fill_n(out.I, out.Count, 1.0F);
  std::fill_n(out.Q, out.Count, 0.0F);
}

FmProgramme::FmProgramme(const Audio& audio, std::int64_t cycleChunks, double deviationHz) {
  std::array<float, kSlowChunkFrames> i{}, q{};
  std::vector<double> sum;
  sum.reserve(static_cast<std::size_t>(cycleChunks * kSlowChunkFrames));
  double phase = 0.0;
  for (std::int64_t chunk = 0; chunk < cycleChunks; ++chunk) {
    audio.Render(kFirstChunk + chunk, {i.data(), q.data(), kSlowChunkFrames});
    for (const float sample : i) {
      sum.push_back(phase);
      phase += 2.0 * std::numbers::pi * deviationHz / kSlowRate * static_cast<double>(sample);
    }
  }
  const double drift = phase / static_cast<double>(sum.size());
  phase_.resize(sum.size());
  for (std::size_t n = 0; n < sum.size(); ++n)
    phase_[n] = static_cast<float>(sum[n] - drift * static_cast<double>(n));
}

float FmProgramme::PhaseAt(std::int64_t sample) const {
  return phase_[static_cast<std::size_t>(FloorModulo(sample, static_cast<std::int64_t>(phase_.size())))];
}

void FmProgramme::Render(std::int64_t chunk, IqSpan out) {
  constexpr int kRatio = kFastRate / kSlowRate;
  const std::int64_t first = (chunk - kFirstChunk) * kSlowChunkFrames;
  for (int n = 0; n < kSlowChunkFrames; ++n) {
    // Catmull-Rom spline through four samples of the phase.
    const float p0 = PhaseAt(first + n - 1), p1 = PhaseAt(first + n), p2 = PhaseAt(first + n + 1),
                p3 = PhaseAt(first + n + 2);
    for (int k = 0; k < kRatio; ++k) {
      const float t = static_cast<float>(k) / kRatio;
      const float phase =
          p1 +
          0.5F * t *
              (p2 - p0 + t * (2.0F * p0 - 5.0F * p1 + 4.0F * p2 - p3 + t * (3.0F * (p1 - p2) + p3 - p0)));
      out.I[n * kRatio + k] = std::cos(phase);
      out.Q[n * kRatio + k] = std::sin(phase);
    }
  }
}

}  // namespace quorl
