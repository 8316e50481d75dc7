// Makes the demo recording: 16 seconds of a crowded band on a 12 kHz IF, 48000 Hz, 16 bit, one channel.
//
// The local oscillator lies below the band, so the IF is upright. Seen from the IF's centre:
//      0 Hz  AM broadcast with a speech-like programme, 70 percent modulated
//  +1700 Hz  an unmodulated carrier beside it, a heterodyne to be notched out
//  +6000 Hz  Morse telegraphy, 20 words a minute
//  -7000 Hz  single sideband, upper, of two tones at 700 and 1900 Hz
// and noise over everything. The same samples come out at every run.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/system/LinuxFiles.h"
#include "recorder/files/WavWriter.h"

namespace {

constexpr int SampleRate = 48000;
constexpr int Seconds = 16;
constexpr double IFCentre = 12000.0;
constexpr double Turn = 2.0 * std::numbers::pi;

// Levels, in units of the 16-bit samples.
constexpr double BroadcastLevel = 5000.0, HeterodyneLevel = 900.0, MorseLevel = 1800.0, ToneLevel = 1200.0,
                 NoiseLevel = 40.0;

class Oscillator {
 public:
  double Next(double frequency) {
    phase_ += frequency / SampleRate;
    phase_ -= std::floor(phase_);
    return std::cos(Turn * phase_);
  }

 private:
  double phase_ = 0.0;
};

// Second-order resonance: what one formant of the mouth does to the voice.
class Resonance {
 public:
  double Next(double input, double frequency, double width) {
    const double radius = std::exp(-std::numbers::pi * width / SampleRate);
    const double output = (1.0 - radius) * input +
                          2.0 * radius * std::cos(Turn * frequency / SampleRate) * y1_ -
                          radius * radius * y2_;
    y2_ = y1_;
    return y1_ = output;
  }

 private:
  double y1_ = 0.0, y2_ = 0.0;
};

// Vowels in syllables of a quarter second with a falling pitch and a pause at each phrase's end.
class Voice {
 public:
  double Next() {
    const double time = static_cast<double>(sample_++) / SampleRate;
    const int syllable = static_cast<int>(time / SyllableSeconds);
    const double within = time / SyllableSeconds - syllable;
    const auto& vowel = Vowels[static_cast<std::size_t>(syllable * 7 % 5)];
    const double pitch = 135.0 - 4.0 * (syllable % SyllablesInPhrase) + 6.0 * std::sin(Turn * within);
    const bool pause = syllable % SyllablesInPhrase == SyllablesInPhrase - 1;

    phase_ += pitch / SampleRate;
    const bool pulse = phase_ >= 1.0;
    if (pulse) phase_ -= 1.0;
    const double excitation = pulse && !pause ? std::sin(std::numbers::pi * within) : 0.0;
    double sum = 0.0;
    for (std::size_t i = 0; i < vowel.size(); ++i) {
      sum += mouth_[i].Next(excitation, vowel[i], 60.0 + 30.0 * static_cast<double>(i));
    }
    return std::tanh(25.0 * sum);
  }

 private:
  static constexpr double SyllableSeconds = 0.25;
  static constexpr int SyllablesInPhrase = 9;
  // The first three formants of a, e, i, o and u, in Hz.
  static constexpr std::array<std::array<double, 3>, 5> Vowels = {{{730.0, 1090.0, 2440.0},
                                                                   {530.0, 1840.0, 2480.0},
                                                                   {270.0, 2290.0, 3010.0},
                                                                   {570.0, 840.0, 2410.0},
                                                                   {300.0, 870.0, 2240.0}}};
  std::int64_t sample_ = 0;
  double phase_ = 0.0;
  std::array<Resonance, 3> mouth_;
};

struct MorseLetter {
  char Letter;
  std::string_view Signs;
};
constexpr std::array<MorseLetter, 11> MorseAlphabet = {{{'A', ".-"},
                                                        {'C', "-.-."},
                                                        {'D', "-.."},
                                                        {'E', "."},
                                                        {'K', "-.-"},
                                                        {'L', ".-.."},
                                                        {'O', "---"},
                                                        {'Q', "--.-"},
                                                        {'R', ".-."},
                                                        {'S', "..."},
                                                        {'U', "..-"}}};

// Key down or up, one entry for each dot length.
std::vector<bool> KeyMorse(std::string_view text) {
  std::vector<bool> keyed;
  for (const char letter : text) {
    if (letter == ' ') {
      keyed.insert(keyed.end(), 4, false);
      continue;
    }
    const auto* found = std::find_if(MorseAlphabet.begin(), MorseAlphabet.end(),
                                     [letter](const MorseLetter& known) { return known.Letter == letter; });
    for (const char sign : found->Signs) {
      keyed.insert(keyed.end(), sign == '-' ? 3 : 1, true);
      keyed.push_back(false);
    }
    keyed.insert(keyed.end(), 2, false);
  }
  return keyed;
}

std::vector<std::int16_t> MakeBand() {
  constexpr int DotSamples = SampleRate * 60 / 1000;  // 60 ms: 20 words a minute
  constexpr double KeyEdge = 1.0 / 240.0;             // 5 ms rise and fall against key clicks
  const std::vector<bool> keyed = KeyMorse("CQ CQ DE QUORLSDR K  ");
  Voice voice;
  Oscillator broadcast, heterodyne, morse, lowTone, highTone;
  std::mt19937 random(12000);
  double key = 0.0;
  std::vector<std::int16_t> band(static_cast<std::size_t>(SampleRate) * Seconds);
  for (std::size_t n = 0; n < band.size(); ++n) {
    const bool down = keyed[n / DotSamples % keyed.size()];
    key = std::clamp(key + (down ? KeyEdge : -KeyEdge), 0.0, 1.0);
    // The sum of four even distributions is near enough to the normal one.
    double noise = 0.0;
    for (int i = 0; i < 4; ++i) noise += static_cast<double>(random()) / 4294967296.0 - 0.5;

    const double sum =
        BroadcastLevel * (1.0 + 0.7 * voice.Next()) * broadcast.Next(IFCentre) +
        HeterodyneLevel * heterodyne.Next(IFCentre + 1700.0) +
        MorseLevel * key * morse.Next(IFCentre + 6000.0) +
        ToneLevel * (lowTone.Next(IFCentre - 7000.0 + 700.0) + highTone.Next(IFCentre - 7000.0 + 1900.0)) +
        NoiseLevel * noise * std::numbers::sqrt3;
    band[n] = static_cast<std::int16_t>(std::lrint(std::clamp(sum, -32768.0, 32767.0)));
  }
  return band;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "make_demo_recording: one argument is needed, the file to write\n");
    return 2;
  }
  quorl::LinuxFiles files;
  quorl::Failure failure;
  auto writer = quorl::WavWriter::Create(files, argv[1], 1, SampleRate, failure);
  if (!failure) {
    const std::vector<std::int16_t> band = MakeBand();
    failure = writer->Write(band.data(), static_cast<int>(band.size()));
  }
  if (!failure) failure = writer->Commit();
  if (failure) std::fprintf(stderr, "make_demo_recording: %s\n", failure->Text.c_str());
  return failure ? 1 : 0;
}
