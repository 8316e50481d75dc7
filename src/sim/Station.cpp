#include "sim/Station.h"
#include "support/Decibels.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorl {

Station::Station(const StationSettings& settings, std::unique_ptr<Programme> programme)
    : settings_(settings), programme_(std::move(programme)), interpolator_(programme_->FramesPerChunk()) {}

// Three slow waves of unrelated periods: never quite the same twice within an evening.
double Station::GainAt(std::int64_t chunk) const {
  const double level = Ratio(settings_.LevelDbm);
  if (settings_.FadingDb <= 0.0) return level;
  const double turns = static_cast<double>(chunk) / kChunksPerSecond / settings_.FadingSeconds;
  const auto wave = [&](double speed, std::uint64_t index) {
    return std::sin(2.0 * std::numbers::pi * (turns * speed + UnitHash(settings_.Seed, index)));
  };
  const double fade = 0.5 + (wave(1.0, 11) + 0.6 * wave(1.618, 12) + 0.4 * wave(0.577, 13)) / 4.0;
  return level * Ratio(-settings_.FadingDb * fade);
}

void Station::RenderInput(std::int64_t chunk) {
  const int frames = programme_->FramesPerChunk();
  programme_->Render(chunk, {inI_.data() + kHistory, inQ_.data() + kHistory, frames});
}

void Station::Prepare(std::int64_t chunk) {
  if (chunk == chunk_) return;
  const int frames = programme_->FramesPerChunk();
  if (chunk != chunk_ + 1 || chunk_ < 0) RenderInput(chunk - 1);
  for (auto* samples : {&inI_, &inQ_}) std::copy_n(samples->begin() + frames, kHistory, samples->begin());
  RenderInput(chunk);
  chunk_ = chunk;
  interpolator_.Run(inI_.data(), outI_.data());
  interpolator_.Run(inQ_.data(), outQ_.data());

  const double begin = GainAt(chunk);
  const double slope = (GainAt(chunk + 1) - begin) / kChunkFrames;
  for (int n = 0; n < kChunkFrames; ++n) {
    const auto gain = static_cast<float>(begin + slope * n);
    outI_[static_cast<std::size_t>(n)] *= gain;
    outQ_[static_cast<std::size_t>(n)] *= gain;
  }
}

}  // namespace quorl
