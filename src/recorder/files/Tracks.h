// The tracks of a recording: what its tuning log means in frames and seconds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "recorder/files/RecordingHeader.h"

namespace quorl {

struct Track {
  std::size_t Record = 0;                    // its number in the log, from 0
  double When = 0.0;                         // as LogRecord has it
  std::int32_t Freq = 0;                     // dHz
  double StartSeconds = 0.0, Seconds = 0.0;  // as the log tells, also beyond the samples
  // What of it the file holds; no frames for a track behind the last sample.
  std::int64_t FirstFrame = 0, Frames = 0;
};

// In the order of the log. Records shorter than half a second are none.
std::vector<Track> TracksOf(const Recording& recording);

// "1:02:03", hours without leading zeros, the nearest second. Not below 0.
std::string HoursText(double seconds);

}  // namespace quorl
