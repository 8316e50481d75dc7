#include "sim/Keyed.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorl {
namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

struct MorseSign {
  char Character;
  std::string_view Code;
};
constexpr std::array kMorse = std::to_array<MorseSign>({
    {'A', ".-"},     {'B', "-..."},   {'C', "-.-."},   {'D', "-.."},   {'E', "."},     {'F', "..-."},
    {'G', "--."},    {'H', "...."},   {'I', ".."},     {'J', ".---"},  {'K', "-.-"},   {'L', ".-.."},
    {'M', "--"},     {'N', "-."},     {'O', "---"},    {'P', ".--."},  {'Q', "--.-"},  {'R', ".-."},
    {'S', "..."},    {'T', "-"},      {'U', "..-"},    {'V', "...-"},  {'W', ".--"},   {'X', "-..-"},
    {'Y', "-.--"},   {'Z', "--.."},   {'0', "-----"},  {'1', ".----"}, {'2', "..---"}, {'3', "...--"},
    {'4', "....-"},  {'5', "....."},  {'6', "-...."},  {'7', "--..."}, {'8', "---.."}, {'9', "----."},
    {'.', ".-.-.-"}, {',', "--..--"}, {'?', "..--.."}, {'/', "-..-."}, {'=', "-...-"}, {'+', ".-.-."},
    {'-', "-....-"},
});

std::string_view CodeOf(char c) {
  const char upper = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  const auto* sign = std::find_if(kMorse.begin(), kMorse.end(),
                                  [upper](const MorseSign& each) { return each.Character == upper; });
  return sign == kMorse.end() ? std::string_view() : sign->Code;
}

// Level of a keyed carrier `sample` samples after an edge: a raised cosine of 5 ms from 0 to 1.
float EdgeLevel(std::int64_t sample) {
  constexpr int kEdge = kSlowRate / 200;
  if (sample >= kEdge) return 1.0F;
  return static_cast<float>(0.5 -
                            0.5 * std::cos(std::numbers::pi * (static_cast<double>(sample) + 0.5) / kEdge));
}

}  // namespace

MorseProgramme::MorseProgramme(std::string_view text, double wordsPerMinute, double pauseSeconds)
    : unitSamples_(std::llround(1.2 / wordsPerMinute * kSlowRate)) {
  keys_.push_back(0);
  for (const char c : text) {
    const std::string_view code = CodeOf(c);
    for (const char element : code) {
      keys_.insert(keys_.end(), element == '-' ? 3 : 1, 1);
      keys_.push_back(0);
    }
    // A letter ends with three dots of gap, a word with seven.
    keys_.insert(keys_.end(), code.empty() ? 4 : 2, 0);
  }
  const auto pause = static_cast<std::size_t>(std::max(0.0, pauseSeconds * kSlowRate)) /
                     static_cast<std::size_t>(unitSamples_);
  keys_.insert(keys_.end(), pause + 7, 0);
}

void MorseProgramme::Render(std::int64_t chunk, IqSpan out) {
  const auto units = static_cast<std::int64_t>(keys_.size());
  std::int64_t position = FloorModulo((chunk - kFirstChunk) * kSlowChunkFrames, units * unitSamples_);
  for (int n = 0; n < out.Count; ++n) {
    const std::int64_t unit = position / unitSamples_;
    const std::int64_t offset = position % unitSamples_;
    const bool down = KeyDown(unit);
    const bool wasDown = unit > 0 && KeyDown(unit - 1);
    const float edge = down != wasDown ? EdgeLevel(offset) : 1.0F;
    out.I[n] = down ? edge : 1.0F - edge;
    if (!down && !wasDown) out.I[n] = 0.0F;
    out.Q[n] = 0.0F;
    if (++position == units * unitSamples_) position = 0;
  }
}

void PipProgramme::Render(std::int64_t chunk, IqSpan out) {
  audio_->Render(chunk, out);
  const std::int64_t second = chunk / kChunksPerSecond % 60;
  const double length = second == 0 ? settings_.MinuteSeconds : second == 59 ? 0.0 : settings_.PipSeconds;
  const auto pipSamples = static_cast<std::int64_t>(length * kSlowRate);
  const std::int64_t first = chunk % kChunksPerSecond * kSlowChunkFrames;
  for (int n = 0; n < out.Count; ++n) {
    const std::int64_t at = first + n;
    const float pip = at < pipSamples ? EdgeLevel(std::min(at, pipSamples - 1 - at)) : 0.0F;
    const double tone =
        pip > 0.0F ? std::sin(kTwoPi * settings_.ToneHz * static_cast<double>(at) / kSlowRate) : 0.0;
    // The programme ducks under the pip, so that the sum never overmodulates.
    out.I[n] = 1.0F + 0.85F * pip * static_cast<float>(tone) + 0.5F * (1.0F - pip) * out.I[n];
    out.Q[n] = 0.0F;
  }
}

void CarrierDropProgramme::Render(std::int64_t chunk, IqSpan out) {
  const std::int64_t second = chunk / kChunksPerSecond;
  const bool one = (HashOf(seed_, static_cast<std::uint64_t>(second)) & 1U) != 0;
  const std::int64_t drop = second % 60 == 59 ? 0 : one ? kSlowRate / 5 : kSlowRate / 10;
  const std::int64_t first = chunk % kChunksPerSecond * kSlowChunkFrames;
  for (int n = 0; n < out.Count; ++n) {
    const std::int64_t at = first + n;
    const float low = at < drop ? EdgeLevel(at) : drop > 0 ? 1.0F - EdgeLevel(at - drop) : 0.0F;
    out.I[n] = 1.0F - 0.85F * low;
    out.Q[n] = 0.0F;
  }
}

void DataProgramme::Render(std::int64_t chunk, IqSpan out) {
  constexpr std::int64_t kSlot = 15LL * kSlowRate, kSymbol = 16LL * kSlowRate / 100, kSymbols = 79;
  constexpr std::int64_t kBegin = kSlowRate / 2;
  const std::int64_t first = chunk * kSlowChunkFrames;
  const auto slot = static_cast<std::uint64_t>(first / kSlot);
  for (int n = 0; n < out.Count; ++n) {
    const std::int64_t at = (first + n) % kSlot - kBegin;
    if (at < 0 || at >= kSymbols * kSymbol) {
      out.I[n] = out.Q[n] = 0.0F;
      continue;
    }
    const auto tone = HashOf(seed_ + slot, static_cast<std::uint64_t>(at / kSymbol)) % 8;
    const double base = std::fmod(audioHz_ * static_cast<double>(at) / kSlowRate, 1.0);
    const double offset = 6.25 * static_cast<double>(tone) * static_cast<double>(at % kSymbol) / kSlowRate;
    const float level = EdgeLevel(std::min(at, kSymbols * kSymbol - 1 - at));
    out.I[n] = level * static_cast<float>(std::cos(kTwoPi * (base + offset)));
    out.Q[n] = level * static_cast<float>(std::sin(kTwoPi * (base + offset)));
  }
}

}  // namespace quorl
