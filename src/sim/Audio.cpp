#include "sim/Audio.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorl {

void ToneAudio::Render(std::int64_t chunk, IqSpan out) const {
  const double step = 2.0 * std::numbers::pi * hz_ / kSlowRate;
  const double cycles = std::fmod(hz_ * static_cast<double>(chunk) / kChunksPerSecond, 1.0);
  for (int n = 0; n < out.Count; ++n) {
    const double phase = 2.0 * std::numbers::pi * cycles + step * n;
    out.I[n] = static_cast<float>(std::cos(phase));
    out.Q[n] = static_cast<float>(std::sin(phase));
  }
}

void Playlist::Add(std::shared_ptr<const Audio> audio, std::int64_t chunks, bool relative, int fadeChunks) {
  items_.push_back({std::move(audio), cycle_, cycle_ + chunks, relative, fadeChunks});
  cycle_ += chunks;
}

void Playlist::Render(std::int64_t chunk, IqSpan out) const {
  std::fill_n(out.I, out.Count, 0.0F);
  std::fill_n(out.Q, out.Count, 0.0F);
  if (cycle_ == 0) return;
  const std::int64_t position = FloorModulo(chunk - kFirstChunk + offset_, cycle_);
  const auto item = std::upper_bound(items_.begin(), items_.end(), position,
                                     [](std::int64_t at, const Item& other) { return at < other.End; });
  if (!item->Sound) return;
  item->Sound->Render(item->Relative ? position - item->Begin : chunk, out);

  const std::int64_t edge = std::min(position - item->Begin, item->End - 1 - position);
  if (edge >= item->FadeChunks) return;
  const bool rising = position - item->Begin <= item->End - 1 - position;
  const auto length = static_cast<float>(item->FadeChunks);
  const float from = static_cast<float>(rising ? edge : edge + 1) / length;
  const float slope = (rising ? 1.0F : -1.0F) / (length * static_cast<float>(out.Count));
  for (int n = 0; n < out.Count; ++n) {
    const float gain = from + slope * static_cast<float>(n);
    out.I[n] *= gain;
    out.Q[n] *= gain;
  }
}

}  // namespace quorl
