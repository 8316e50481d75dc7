// A small band that never stops playing: plucked melody, bass and soft chords over four changing chords.
#pragma once

#include <cstdint>

#include "sim/Audio.h"

namespace quorl {

class Melody final : public Audio {
 public:
  // `seed` chooses key, chords and tune.
  explicit Melody(std::uint64_t seed);
  void Render(std::int64_t chunk, IqSpan out) const override;

 private:
  struct Note {
    double Hz = 0.0;  // 0: rest
    double Amplitude = 0.0;
  };
  Note MelodyNote(std::int64_t step) const;
  Note BassNote(std::int64_t step) const;
  // Semitones of the chord of `bar` above the key: `voice` 0 root, 1 third, 2 fifth.
  int ChordTone(std::int64_t bar, int voice) const;
  double Pitch(int semitones) const;

  std::uint64_t seed_;
  double keyHz_;
  int progression_;
};

}  // namespace quorl
