// One transmitter as the antenna hears it: its programme at its level, fading, raised to 48000 Hz.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "sim/Interpolator.h"
#include "sim/Programme.h"

namespace quorl {

struct StationSettings {
  double FrequencyHz = 0.0;
  double LevelDbm = 0.0;
  double FadingDb = 0.0;        // how deep the deepest fade is
  double FadingSeconds = 12.0;  // period of its main component
  std::uint64_t Seed = 0;
};

class Station {
 public:
  Station(const StationSettings& settings, std::unique_ptr<Programme> programme);

  double FrequencyHz() const { return settings_.FrequencyHz; }
  double LevelDbm() const { return settings_.LevelDbm; }
  // What it fills to each side of its frequency, Hz.
  double HalfWidthHz() const { return programme_->FramesPerChunk() == kSlowChunkFrames ? 4600.0 : 12000.0; }

  // Makes the samples of `chunk`, unless they are the ones that stand already. A pure function of `chunk`.
  void Prepare(std::int64_t chunk);
  // kChunkFrames samples around 0 Hz at 48000 Hz; amplitude 1 is 0 dBm.
  const float* I() const { return outI_.data(); }
  const float* Q() const { return outQ_.data(); }

 private:
  static constexpr int kHistory = Interpolator::kHistory;
  static constexpr int kInput = kHistory + kFastChunkFrames;

  double GainAt(std::int64_t chunk) const;
  void RenderInput(std::int64_t chunk);

  StationSettings settings_;
  std::unique_ptr<Programme> programme_;
  Interpolator interpolator_;
  std::int64_t chunk_ = -1;  // the one that stands in the arrays
  std::array<float, kInput> inI_{}, inQ_{};
  std::array<float, kChunkFrames> outI_{}, outQ_{};
};

}  // namespace quorl
