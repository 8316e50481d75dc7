#include "sim/SpeechClip.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorl {
namespace {

constexpr int kHilbertHalf = 63;  // odd taps to each side: flat from about 130 Hz on

std::uint32_t LittleEndian(std::string_view bytes, std::size_t at, int count) {
  std::uint32_t value = 0;
  for (int n = count - 1; n >= 0; --n)
    value = (value << 8U) | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(n)]);
  return value;
}

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

Failure DecodeSpeech(std::string_view content, const std::string& name, std::vector<float>& samples) {
  constexpr const char* kNeed = "; a speech clip is a WAV of 8000 Hz, mono, 8-bit mu-law";
  if (content.size() < 12 || content.substr(0, 4) != "RIFF" || content.substr(8, 4) != "WAVE")
    return Error{1, name + " is no WAV file" + kNeed};
  bool formatSeen = false;
  for (std::size_t at = 12; at + 8 <= content.size();) {
    const std::string_view tag = content.substr(at, 4);
    const std::size_t length = LittleEndian(content, at + 4, 4);
    const std::string_view body = content.substr(at + 8, length);
    if (tag == "fmt " && body.size() >= 16) {
      formatSeen = LittleEndian(body, 0, 2) == 7 && LittleEndian(body, 2, 2) == 1 &&
                   LittleEndian(body, 4, 4) == 8000 && LittleEndian(body, 14, 2) == 8;
      if (!formatSeen) return Error{2, name + " has another sample format" + kNeed};
    } else if (tag == "data" && formatSeen) {
      samples.resize(body.size());
      std::transform(body.begin(), body.end(), samples.begin(),
                     [](char c) { return FromMuLaw(static_cast<unsigned char>(c)); });
      return std::nullopt;
    }
    at += 8 + length + (length & 1U);
  }
  return Error{3, name + " holds no samples" + kNeed};
}

}  // namespace quorl
