#include "sim/SpeechClip.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "recorder/files/RiffReader.h"
#include "recorder/files/SampleStream.h"

namespace quorl {
namespace {

constexpr std::int64_t kLongest = 10 * 60 * 8000;  // samples: a programme for a demo, not an archive
constexpr int kHilbertHalf = 63;                   // odd taps to each side: flat from about 130 Hz on

// G.711: sign, three bits of exponent, four of mantissa, all inverted.
float FromMuLaw(unsigned char code) {
  const unsigned bits = ~static_cast<unsigned>(code) & 0xFFU;
  const int exponent = static_cast<int>((bits >> 4U) & 7U);
  const int magnitude = ((static_cast<int>(bits & 0xFU) << 3) + 0x84) * (1 << exponent) - 0x84;
  return static_cast<float>((bits & 0x80U) != 0 ? -magnitude : magnitude) / 32768.0F;
}

}  // namespace

SpeechClip::SpeechClip(std::vector<float> samples) : i_(std::move(samples)), q_(i_.size()) {
  // Ideal transformer, taps 2/(pi k) at odd k, under a Hamming window.
  const auto count = static_cast<std::int64_t>(i_.size());
  for (int k = 1; k <= kHilbertHalf; k += 2) {
    const double window = 0.54 + 0.46 * std::cos(std::numbers::pi * k / (kHilbertHalf + 1));
    const auto tap = static_cast<float>(2.0 / (std::numbers::pi * k) * window);
    for (std::int64_t n = 0; n < count; ++n) {
      const float earlier = n >= k ? i_[static_cast<std::size_t>(n - k)] : 0.0F;
      const float later = n + k < count ? i_[static_cast<std::size_t>(n + k)] : 0.0F;
      q_[static_cast<std::size_t>(n)] += tap * (earlier - later);
    }
  }
}

std::int64_t SpeechClip::Chunks() const {
  return (static_cast<std::int64_t>(i_.size()) + kSlowChunkFrames - 1) / kSlowChunkFrames;
}

void SpeechClip::Render(std::int64_t chunk, IqSpan out) const {
  const std::int64_t first = chunk * kSlowChunkFrames;
  const auto size = static_cast<std::int64_t>(i_.size());
  for (int n = 0; n < out.Count; ++n) {
    const std::int64_t at = first + n;
    const bool inside = at >= 0 && at < size;
    out.I[n] = inside ? i_[static_cast<std::size_t>(at)] : 0.0F;
    out.Q[n] = inside ? q_[static_cast<std::size_t>(at)] : 0.0F;
  }
}

Failure DecodeSpeech(OpenFile& file, std::vector<float>& samples) {
  const auto fault = [&file](const std::string& what) {
    return Error{1, file.Name() + what + "; a speech clip is a WAV of 8000 Hz, mono, 8-bit mu-law"};
  };
  Failure failure;
  const auto layout = ReadWavLayout(file, failure);
  if (failure) return failure->Code < 0 ? fault(" holds no samples") : *failure;
  const WavFormat& format = layout->Format;
  if (format.Tag != WavFormat::MuLaw || format.Channels != 1 || format.Rate != 8000 || format.Bits != 8)
    return fault(" has another sample format");
  const std::int64_t count = layout->BytesThere.value_or(0);
  if (count > kLongest) return fault(" is longer than ten minutes");
  std::vector<unsigned char> codes(static_cast<std::size_t>(count));
  file.ReadAt(layout->DataAt, codes.data(), count, failure);
  samples.resize(codes.size());
  std::transform(codes.begin(), codes.end(), samples.begin(), FromMuLaw);
  return failure;
}

}  // namespace quorl
