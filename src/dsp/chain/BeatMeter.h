// How far the strongest carrier lies from the middle of the IF: what a listener hears as a beat, as a number.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "dsp/fft/clsFFT.h"
#include "state/PublicConstants.h"

namespace quorl {

// Takes the IF as the board delivers it, ahead of every filter, mixes it to 0 Hz, thins it out to 6 kHz and
// keeps the last two thirds of a second. Nothing is done while it isn't active. A steady carrier is read to a
// few hundredths of a hertz.
class BeatMeter {
 public:
  static constexpr double kReach = 2000;  // Hz to either side

  explicit BeatMeter(KernelSettings& settings);

  // Switching it on forgets what was heard before.
  void SetActive(bool active);
  bool Active() const { return active_; }
  // Forgets what was heard: the tuning has changed.
  void Restart();

  // One block of SamplesPerEvent samples. `q` is null where the board has one channel. Where it has both, Q
  // runs ahead of I, and a station on the other side of the board's oscillator is not taken for a carrier.
  void Take(const std::int16_t* i, const std::int16_t* q);

  // Hz, positive where the carrier lies above the IF's centre. Empty as long as too little has been heard,
  // and where no carrier stands out from the noise.
  std::optional<double> Offset();

 private:
  static constexpr std::int32_t kStep = 8, kPoints = 4096;  // samples of the sound card for one that is kept
  static constexpr std::size_t kTaps = 96;
  static constexpr std::size_t kHistory = kTaps - 1;

  void Thin();
  void Keep(float real, float imaginary);
  void Transform();
  float PowerAt(std::int32_t bin) const;

  clsFFT fft_;
  bool active_ = false;
  std::array<float, kTaps> taps_{};
  // The block at 0 Hz behind the end of the one before.
  std::array<float, kHistory + SamplesPerEvent> real_{}, imaginary_{};
  std::vector<float> keptReal_, keptImaginary_;  // [kPoints], a ring
  std::int32_t next_ = 0, heard_ = 0;
  std::vector<float> window_, inReal_, inImaginary_, outReal_, outImaginary_, powers_;
};

}  // namespace quorl
