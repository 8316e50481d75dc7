// Transmitters that key a carrier: Morse, time signals, tones of data.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "sim/Audio.h"
#include "sim/Programme.h"

namespace quorl {

// Morse with soft edges of 5 ms. Letters, figures and . , ? / = + - are sent; any other character is a gap.
class MorseProgramme final : public Programme {
 public:
  // `wordsPerMinute` 5 to 60 (PARIS); `pauseSeconds` follow the text, then it starts again.
  MorseProgramme(std::string_view text, double wordsPerMinute, double pauseSeconds);
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  bool KeyDown(std::int64_t unit) const { return keys_[static_cast<std::size_t>(unit)] != 0; }
  std::vector<std::uint8_t> keys_;  // one a dot length; begins and ends with the key up
  std::int64_t unitSamples_;
};

struct TimeSignalSettings {
  double ToneHz = 1000.0;
  double PipSeconds = 0.1;
  double MinuteSeconds = 0.8;  // the long pip of second 0
};

// AM time station: a pip at each second, a long one at the minute, none at second 59, audio in between.
class PipProgramme final : public Programme {
 public:
  PipProgramme(std::shared_ptr<const Audio> audio, const TimeSignalSettings& settings)
      : audio_(std::move(audio)), settings_(settings) {}
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  std::shared_ptr<const Audio> audio_;
  TimeSignalSettings settings_;
};

// Low-frequency time station: the carrier falls to 15 percent for 0.1 s (a 0) or 0.2 s (a 1) at each second
// but the last of the minute.
class CarrierDropProgramme final : public Programme {
 public:
  explicit CarrierDropProgramme(std::uint64_t seed) : seed_(seed) {}
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  std::uint64_t seed_;
};

// Eight tones 6.25 Hz apart, 0.16 s each, 12.64 s of every 15 s. A symbol holds a whole number of cycles of
// the spacing, so that the phase runs through without a sum.
class DataProgramme final : public Programme {
 public:
  // `audioHz` is the lowest tone's distance from the station's frequency.
  DataProgramme(std::uint64_t seed, double audioHz) : seed_(seed), audioHz_(audioHz) {}
  void Render(std::int64_t chunk, IqSpan out) override;

 private:
  std::uint64_t seed_;
  double audioHz_;
};

}  // namespace quorl
