#include "recorder/PlaybackQueue.h"

#include <algorithm>
#include <utility>

#include "recorder/files/LittleEndian.h"

namespace quorl {

void PlaybackQueue::Open(std::shared_ptr<OpenFile> file, std::int64_t begin, std::int64_t end,
                         std::int32_t halfSamples, std::int64_t hold, std::function<void()> onArrival) {
  for (Half& half : halves_) half.Samples.assign(static_cast<std::size_t>(halfSamples), 0);
  begin_ = begin;
  end_ = end;
  ahead_.OnArrival = std::move(onArrival);
  ahead_.Open(std::move(file), begin, end, hold);
  Start(begin);
}

void PlaybackQueue::Close() {
  ahead_.Close();
  for (Half& half : halves_) half = {};
}

void PlaybackQueue::Start(std::int64_t at) {
  for (Half& half : halves_) half.Loaded = half.Last = false;
  playing_ = 0;
  fill_ = 0;
  at_ = next_ = std::clamp(at, begin_, end_);
  Load();
}

bool PlaybackQueue::LoadHalf(Half& half) {
  const auto room = static_cast<std::int64_t>(half.Samples.size() * sizeof(std::int16_t));
  const std::int64_t bytes = std::min(room, end_ - next_) & ~std::int64_t{1};
  if (!ahead_.Take(next_, half.Samples.data(), bytes)) return false;
  half.Count = static_cast<std::int32_t>(bytes / 2);
  SwapFileOrder(half.Samples.data(), static_cast<std::size_t>(half.Count));
  std::fill(half.Samples.begin() + half.Count, half.Samples.end(), std::int16_t{0});
  next_ += bytes;
  half.Loaded = true;
  half.Last = next_ + 1 >= end_;
  return true;
}

void PlaybackQueue::Load() {
  for (const int which : {playing_, 1 - playing_}) {
    Half& half = halves_[static_cast<std::size_t>(which)];
    if (!half.Loaded && !LoadHalf(half)) return;
    if (half.Last) return;
  }
}

void PlaybackQueue::Follow() {
  Load();
  ahead_.Follow(next_);
}

const std::int16_t* PlaybackQueue::Next(std::int32_t count) {
  Half& half = halves_[static_cast<std::size_t>(playing_)];
  if (!half.Loaded) Load();
  if (!half.Loaded || fill_ + count > static_cast<std::int32_t>(half.Samples.size())) return nullptr;
  return half.Samples.data() + fill_;
}

PlaybackQueue::Place PlaybackQueue::Advance(std::int32_t count) {
  Half& half = halves_[static_cast<std::size_t>(playing_)];
  fill_ += count;
  at_ += std::int64_t{2} * count;
  if (half.Last && fill_ >= half.Count) return Place::AtEnd;
  if (fill_ < static_cast<std::int32_t>(half.Samples.size())) return Place::WithinHalf;
  half.Loaded = false;
  playing_ = 1 - playing_;
  fill_ = 0;
  return Place::BehindHalf;
}

}  // namespace quorl
