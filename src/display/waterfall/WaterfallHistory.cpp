#include "display/waterfall/WaterfallHistory.h"

#include <algorithm>
#include <cmath>

namespace quorl {

namespace {

constexpr std::int64_t kBlockMicroseconds = 42667;
// A busy machine draws late; a longer pause than this was one.
constexpr std::int64_t kPause = 1000000;
constexpr float kFullScale = 32768.0F;
// Half decibels for each octave of magnitude.
const float kHalfDecibels = 40.0F * std::log10(2.0F);

}  // namespace

void WaterfallHistory::Start() {
  if (IsStarted()) return;
  levels_.assign(kBytes, 0);
  entries_.assign(static_cast<std::size_t>(kLines), {});
  pending_.assign(kMostBins, 0.0F);
}

void WaterfallHistory::Clear() {
  oldest_ = cleared_ = end_;
  place_ = 0;
  pendingBlocks_ = 0;
  anyBlock_ = false;
}

void WaterfallHistory::SetBlocksPerLine(int blocks) {
  blocksPerLine_ = std::max(blocks, 1);
}

std::int64_t WaterfallHistory::LineMicroseconds() const {
  return blocksPerLine_ * kBlockMicroseconds;
}

void WaterfallHistory::Add(const SpectrumLine& line, std::int64_t time) {
  if (!IsStarted() || line.Bins.empty() || line.Bins.size() > kMostBins) return;
  if (anyBlock_ && time - lastTime_ > kPause) {
    if (pendingBlocks_ > 0) Store();
    StoreGap(time);
  }
  Gather(line);
  lastTime_ = time;
  anyBlock_ = true;
  if (pendingBlocks_ >= blocksPerLine_) Store();
}

bool WaterfallHistory::Fits(const SpectrumLine& line) const {
  return line.Bins.size() == pendingBins_ && line.Frequencies.HertzPerBin == pendingHertzPerBin_;
}

// Somebody who tunes moves the band under the line: what it has so far moves along, to the nearest bin.
void WaterfallHistory::MovePending(std::int64_t bins) {
  const auto count = static_cast<std::int64_t>(pendingBins_);
  const std::int64_t by = std::clamp(bins, -count, count);
  const auto begin = pending_.begin(), end = begin + count;
  if (by > 0) {
    std::copy(begin + by, end, begin);
    std::fill(end - by, end, 0.0F);
  } else {
    std::copy_backward(begin, end + by, end);
    std::fill(begin, begin - by, 0.0F);
  }
}

void WaterfallHistory::Gather(const SpectrumLine& line) {
  const std::size_t count = line.Bins.size();
  const double lowest = line.Frequencies.Offset;
  if (pendingBlocks_ > 0 && Fits(line)) {
    if (lowest != pendingLowest_) MovePending(std::llround((lowest - pendingLowest_) / pendingHertzPerBin_));
  } else {
    pendingBlocks_ = 0;
    pendingBins_ = count;
    pendingHertzPerBin_ = line.Frequencies.HertzPerBin;
    std::fill_n(pending_.begin(), count, 0.0F);
  }
  pendingLowest_ = lowest;
  if (line.Ascending) {
    for (std::size_t bin = 0; bin < count; ++bin) pending_[bin] = std::max(pending_[bin], line.Bins[bin]);
  } else {
    // Mirrored, the element at the lowest frequency would be one beyond the last, which stands in for it.
    pending_[0] = std::max(pending_[0], line.Bins[count - 1]);
    for (std::size_t bin = 1; bin < count; ++bin)
      pending_[bin] = std::max(pending_[bin], line.Bins[count - bin]);
  }
  ++pendingBlocks_;
}

void WaterfallHistory::Store() {
  Entry& entry = Next(pendingBins_);
  entry.Time = lastTime_;
  entry.HertzPerBin = pendingHertzPerBin_;
  entry.Lowest = pendingLowest_;
  // A sine of full scale has this magnitude, of the real transform and of the complex one.
  const float scale = 1.0F / (kFullScale * static_cast<float>(pendingBins_));
  for (std::size_t bin = 0; bin < pendingBins_; ++bin) {
    const float below = -kHalfDecibels * std::log2(pending_[bin] * scale);
    levels_[entry.Place + bin] =
        below < 255.0F ? static_cast<std::uint8_t>(std::lrint(std::max(below, 0.0F))) : std::uint8_t{255};
  }
  pendingBlocks_ = 0;
}

void WaterfallHistory::StoreGap(std::int64_t until) {
  const std::int64_t pause = until - lastTime_;
  const std::int64_t lines = std::clamp<std::int64_t>(pause / LineMicroseconds(), 1, kMostGapLines);
  for (std::int64_t line = 1; line <= lines; ++line) Next(0).Time = lastTime_ + pause * line / (lines + 1);
}

// Makes room for a line of so many levels in one piece.
WaterfallHistory::Entry& WaterfallHistory::Next(std::size_t bins) {
  if (place_ + bins > levels_.size()) {
    DropOldest(place_, levels_.size() - place_);
    place_ = 0;
  }
  DropOldest(place_, bins);
  if (Count() == kLines) ++oldest_;
  Entry& entry = EntryAt(end_++);
  entry = {};
  entry.Place = place_;
  entry.Bins = bins;
  place_ += bins;
  return entry;
}

// Lines lie in the memory in their order, so that those in the way are the oldest.
void WaterfallHistory::DropOldest(std::size_t from, std::size_t bins) {
  const auto inTheWay = [&](const Entry& entry) {
    return entry.Place < from + bins && entry.Place + std::max<std::size_t>(entry.Bins, 1) > from;
  };
  while (Count() > 0 && inTheWay(EntryAt(oldest_))) ++oldest_;
}

WaterfallHistory::Line WaterfallHistory::At(std::int64_t number) const {
  const Entry& entry = EntryAt(number);
  return {entry.Time, {levels_.data() + entry.Place, entry.Bins}, entry.HertzPerBin, entry.Lowest};
}

}  // namespace quorl
