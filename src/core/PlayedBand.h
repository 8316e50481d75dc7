// A recorded band in the antenna's place.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "receiver/Receiver.h"
#include "recorder/files/RecordingHeader.h"
#include "tuning/TuningChain.h"

namespace quorl {

// While an IF recording plays, the receiver is that of the recording: its board, its side of the oscillator,
// its frequency. What the listener sets meanwhile, mode, filters, BFO, notch, blanker and AGC, is for the
// recording and comes back with it after a pause; the radio on the air is found as it was left, but for the
// volume. The board on the wire stays where it is.
class PlayedBand {
 public:
  // Both outlive it.
  PlayedBand(Receiver& rx, TuningChain& tuning) : rx_(rx), tuning_(tuning) {}

  // Told when the band begins to play, and when it has ended.
  std::function<void(bool plays)> OnChange = [](bool) {};

  bool IsPlaying() const { return live_.has_value(); }
  // A band of another board takes the place of one that plays. `dHz` is 0 where nobody knows.
  void Begin(const IFOrigin& origin, std::int32_t dHz);
  // The position, in bytes of the file, has moved on. Between two records, and without one, the frequency
  // stays.
  void Follow(const std::vector<LogRecord>& log, std::int64_t position);
  void End();
  // The recording has gone: what was set for it is not for the next one.
  void Forget() { heard_.reset(); }

 private:
  Receiver& rx_;
  TuningChain& tuning_;
  std::optional<Receiver::Reception> live_;   // of the radio on the air, while a band plays
  std::optional<Receiver::Reception> heard_;  // of the recording that is pausing
  IFOrigin origin_;
  std::size_t record_ = 0;  // the one that held the last position
};

}  // namespace quorl
