#include "core/PlayedBand.h"

#include <utility>

namespace quorl {

void PlayedBand::Begin(const IFOrigin& origin, std::int32_t dHz) {
  if (IsPlaying() && origin == origin_) return;
  End();
  if (heard_ && origin != origin_) heard_.reset();
  origin_ = origin;
  record_ = 0;
  live_ = rx_.Keep();
  // Before the side: the oscillator must not follow.
  tuning_.Tune().Play(dHz);
  if (heard_) {
    rx_.Take(*std::exchange(heard_, std::nullopt));
  } else {
    rx_.SetBoard(origin.Model, origin.LowSideLO);
  }
  OnChange(true);
}

void PlayedBand::Follow(const std::vector<LogRecord>& log, std::int64_t position) {
  if (!IsPlaying()) return;
  const auto holds = [&](const LogRecord& record) {
    return record.Start <= position && position <= record.End;
  };
  if (record_ >= log.size() || !holds(log[record_])) {
    const int found = FindRecord(log, position);
    if (found < 0) return;
    record_ = static_cast<std::size_t>(found);
  }
  tuning_.Tune().Play(log[record_].Freq);
}

void PlayedBand::End() {
  if (!IsPlaying()) return;
  heard_ = rx_.Keep();
  rx_.Take(*std::exchange(live_, std::nullopt));
  OnChange(false);
  tuning_.Tune().EndPlay();
}

}  // namespace quorl
