// What the receive chain talks to outside of signal processing, as small interfaces.
#pragma once

#include <cstdint>

namespace quorl {

// The playback device's volume.
class OutputLevel {
 public:
  virtual ~OutputLevel() = default;
  // Hundredths of a decibel, 0 or less; the device clamps to its floor.
  virtual void SetOutputAttenuation(std::int32_t hundredthsOfDecibel) = 0;
};

// Whether a recording takes the antenna's place.
class PlaybackState {
 public:
  virtual ~PlaybackState() = default;
  virtual bool IsPlaying() const = 0;
};

// The spectrum analyser's input.
class AnalyserInput {
 public:
  virtual ~AnalyserInput() = default;
  virtual bool Enabled() const = 0;
  virtual std::int32_t Source() const = 0;  // SpectrumSource: the tap it wants to see
  virtual bool Chn2Enabled() const = 0;
  virtual void LoadSamples_INT16(const std::int16_t* a, const std::int16_t* b) = 0;  // SamplesPerEvent each
  virtual void LoadSamples_S(const float* a, const float* b) = 0;
  virtual double LowerEdge() const = 0;  // of the displayed span, Hz
  virtual double UpperEdge() const = 0;
  virtual void SetFrequencyReference(std::int32_t hertz) = 0;  // of the display's left edge
  virtual void SetLowSideLO(bool low) = 0;
  // What it shows is plain audio.
  virtual bool IsPlainAudio() const { return false; }
  // The taps [BlockPoints] of the IF filter, of plain audio those of the audio filter, for the curve.
  virtual void LoadFilterCoeffs_T_S(const float* taps) = 0;
};

}  // namespace quorl
