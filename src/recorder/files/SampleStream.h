// Where 16-bit samples of a file or pipe come from and where they go, block by block.
#pragma once

#include <cstdint>
#include <optional>

#include "support/Error.h"

namespace quorl {

// Codes of faults that lie in the data itself. Faults of the system carry its own, positive, number.
struct SampleFault {
  static constexpr int NotWave = -1;          // no RIFF/WAVE file
  static constexpr int TruncatedHeader = -2;  // ends before the first sample
  static constexpr int Format = -3;           // width, rate, channel count or coding that isn't taken
  static constexpr int TruncatedData = -4;    // fewer samples than the header tells
  static constexpr int OddLength = -5;        // ends within a frame
  static constexpr int TooLong = -6;          // more than a WAV file can hold
};

class SampleReader {
 public:
  virtual ~SampleReader() = default;
  virtual int Channels() const = 0;
  // Frames in all, where that is known before they are read.
  virtual std::optional<std::int64_t> Frames() const = 0;
  // Fills up to `frames` frames of Channels() samples each; returns how many came, fewer only at the end or
  // with `failure` set.
  virtual int Read(std::int16_t* interleaved, int frames, Failure& failure) = 0;
};

class SampleWriter {
 public:
  virtual ~SampleWriter() = default;
  virtual Failure Write(const std::int16_t* samples, int count) = 0;
  // Everything is where it belongs once this has succeeded. Nothing may be written afterwards.
  virtual Failure Commit() = 0;
};

}  // namespace quorl
