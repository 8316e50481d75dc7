// Which frequency lies where in the picture: one answer for labels, clicks, names and waterfall.
#pragma once

#include <cstdint>

namespace quorl {

// The window of a frequency picture. Bins are counted from the left edge of the whole band upwards in
// frequency, whichever side the local oscillator is on.
struct FrequencyScale {
  double HertzPerBin = 0;
  std::int32_t Offset = 0;             // Hz, of bin 0 (FOffset)
  std::int32_t StartX = 0, StopX = 0;  // bins at the left and right edge
  bool OnAir = false;                  // radio frequencies; otherwise plain audio

  bool operator==(const FrequencyScale&) const = default;

  double Width() const { return StopX - StartX; }
  // X in bins from the left edge of the picture.
  double FrequencyAt(double x) const { return Offset + HertzPerBin * (StartX + x); }
  double XAt(double hertz) const { return (hertz - Offset) / HertzPerBin - StartX; }
};

}  // namespace quorl
