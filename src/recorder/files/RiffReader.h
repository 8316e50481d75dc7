// The layout of a RIFF/WAVE file: what its samples are and where they stand.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/Files.h"

namespace quorl {

// The format chunk. The extensible format's PCM reads as plain PCM.
struct WavFormat {
  static constexpr std::uint16_t Pcm = 1, MuLaw = 7;

  std::uint16_t Tag = 0;
  std::uint16_t Channels = 0;
  std::uint32_t Rate = 0;        // Hz
  std::uint16_t FrameBytes = 0;  // of all channels together
  std::uint16_t Bits = 0;        // a sample
};

struct WavLayout {
  WavFormat Format;
  std::int64_t DataAt = 0;     // byte position of the first sample
  std::int64_t DataBytes = 0;  // as the header promises
  // Of these, what the file holds; empty for a pipe.
  std::optional<std::int64_t> BytesThere;
};

// Walks the chunks up to the first sample, past those it doesn't know. Empty with `failure` set (a code of
// SampleFault or the system's) where the file isn't a WAV file or ends too early for one.
std::optional<WavLayout> ReadWavLayout(OpenFile& file, Failure& failure);

// A failure where the file holds fewer samples than its header promises.
Failure ShortOfSamples(const OpenFile& file, const WavLayout& layout);

}  // namespace quorl
