#include "sim/Melody.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace quorl {
namespace {

constexpr std::int64_t kStepChunks = 24;  // an eighth note of 0.24 s
constexpr std::int64_t kStepsPerBar = 8;
constexpr std::int64_t kNoteSteps = 4;   // how long a plucked note rings
constexpr std::int64_t kTuneSteps = 32;  // the tune returns after four bars
constexpr double kHighestPartialHz = 3300.0;

struct Chord {
  int Root, Third, Fifth;  // semitones above the key
};
constexpr std::array<std::array<Chord, 4>, 3> kProgressions = {{
    {{{0, 4, 7}, {9, 12, 16}, {5, 9, 12}, {7, 11, 14}}},
    {{{9, 12, 16}, {5, 9, 12}, {0, 4, 7}, {7, 11, 14}}},
    {{{0, 4, 7}, {5, 9, 12}, {2, 5, 9}, {7, 11, 14}}},
}};
constexpr std::array<int, 6> kPentatonic = {0, 2, 4, 7, 9, 12};

constexpr std::size_t kHarmonics = 3;

struct Voice {
  std::array<double, kHarmonics> Partials;  // amplitudes
  double DecaySeconds;
};
constexpr Voice kPlucked = {{1.0, 0.35, 0.12}, 0.4};
constexpr Voice kBass = {{1.0, 0.5, 0.25}, 0.6};
constexpr Voice kPad = {{1.0, 0.2, 0.08}, 1e9};

// Adds one note: `begin` is the note's age at the chunk's first sample, in samples; the gain runs from
// `gainBegin` to `gainEnd` over the chunk. The harmonics run side by side: a harmonic's next sample waits
// for the one before.
void AddNote(double hz, const Voice& voice, double begin, double gainBegin, double gainEnd, IqSpan out) {
  std::array<double, kHarmonics> re{}, im{}, stepRe{}, stepIm{};
  for (std::size_t h = 0; h < kHarmonics; ++h) {
    const double partialHz = hz * static_cast<double>(h + 1);
    if (partialHz > kHighestPartialHz) break;
    const double step = 2.0 * std::numbers::pi * partialHz / kSlowRate;
    const double phase = std::fmod(step * begin, 2.0 * std::numbers::pi);
    re[h] = voice.Partials[h] * std::cos(phase);
    im[h] = voice.Partials[h] * std::sin(phase);
    stepRe[h] = std::cos(step);
    stepIm[h] = std::sin(step);
  }
  double gain = gainBegin;
  const double slope = (gainEnd - gainBegin) / out.Count;
  for (int n = 0; n < out.Count; ++n) {
    double sumRe = 0.0, sumIm = 0.0;
    for (std::size_t h = 0; h < kHarmonics; ++h) {
      sumRe += re[h];
      sumIm += im[h];
      const double next = re[h] * stepRe[h] - im[h] * stepIm[h];
      im[h] = re[h] * stepIm[h] + im[h] * stepRe[h];
      re[h] = next;
    }
    out.I[n] += static_cast<float>(gain * sumRe);
    out.Q[n] += static_cast<float>(gain * sumIm);
    gain += slope;
  }
}

// Loudness of a plucked note that is `chunks` old: attack of one chunk, decay, end within the last quarter.
double PluckGain(std::int64_t chunks, double decaySeconds) {
  if (chunks <= 0) return 0.0;
  constexpr std::int64_t kLife = kNoteSteps * kStepChunks;
  const double decay = std::exp(-static_cast<double>(chunks - 1) / kChunksPerSecond / decaySeconds);
  const double release = std::clamp(static_cast<double>(kLife - chunks) / (kLife / 4.0), 0.0, 1.0);
  return decay * release;
}

}  // namespace

Melody::Melody(std::uint64_t seed)
    : seed_(seed),
      keyHz_(220.0 * std::exp2(std::floor(UnitHash(seed, 1) * 9.0 - 4.0) / 12.0)),
      progression_(static_cast<int>(HashOf(seed, 2) % kProgressions.size())) {}

int Melody::ChordTone(std::int64_t bar, int voice) const {
  const Chord& chord =
      kProgressions[static_cast<std::size_t>(progression_)][static_cast<std::size_t>(FloorModulo(bar, 4))];
  return voice == 0 ? chord.Root : voice == 1 ? chord.Third : chord.Fifth;
}

double Melody::Pitch(int semitones) const {
  return keyHz_ * std::exp2(semitones / 12.0);
}

Melody::Note Melody::MelodyNote(std::int64_t step) const {
  // Three rounds of the tune, then one of free play.
  const bool free = FloorModulo(step / kTuneSteps, 4) == 3;
  const auto key = static_cast<std::uint64_t>(free ? step : FloorModulo(step, kTuneSteps)) + 100;
  const bool strong = FloorModulo(step, 4) == 0;
  if (!strong && UnitHash(seed_, 4 * key) < 0.35) return {};
  const std::uint64_t choice = HashOf(seed_, 4 * key + 1);
  const std::int64_t bar = step / kStepsPerBar;
  const int semitones =
      strong ? ChordTone(bar, static_cast<int>(choice % 3)) : kPentatonic[choice % kPentatonic.size()];
  return {Pitch(semitones + 12), strong ? 0.30 : 0.22};
}

Melody::Note Melody::BassNote(std::int64_t step) const {
  if (FloorModulo(step, 4) != 0) return {};
  const bool fifth = FloorModulo(step, kStepsPerBar) != 0;
  return {Pitch(ChordTone(step / kStepsPerBar, fifth ? 2 : 0) - 12), 0.28};
}

void Melody::Render(std::int64_t chunk, IqSpan out) const {
  std::fill_n(out.I, out.Count, 0.0F);
  std::fill_n(out.Q, out.Count, 0.0F);
  const std::int64_t now = chunk / kStepChunks;
  for (std::int64_t step = now; step > now - kNoteSteps; --step) {
    const std::int64_t age = chunk - step * kStepChunks;
    const auto begin = static_cast<double>(age * kSlowChunkFrames);
    for (const auto& [note, voice] : {std::pair{MelodyNote(step), kPlucked}, {BassNote(step), kBass}}) {
      if (note.Hz <= 0.0) continue;
      AddNote(note.Hz, voice, begin, note.Amplitude * PluckGain(age, voice.DecaySeconds),
              note.Amplitude * PluckGain(age + 1, voice.DecaySeconds), out);
    }
  }
  // The chord swells in and out within its bar, so that bars join without a click.
  constexpr std::int64_t kBarChunks = kStepsPerBar * kStepChunks;
  const std::int64_t bar = chunk / kBarChunks;
  const std::int64_t age = chunk - bar * kBarChunks;
  const auto swell = [](std::int64_t at) {
    return 0.07 * std::sin(std::numbers::pi * static_cast<double>(at) / kBarChunks);
  };
  for (int voice = 0; voice < 3; ++voice) {
    AddNote(Pitch(ChordTone(bar, voice)), kPad, static_cast<double>(age * kSlowChunkFrames), swell(age),
            swell(age + 1), out);
  }
}

}  // namespace quorl
