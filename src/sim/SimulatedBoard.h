// A receiver board: mixes what the antenna hears with the chip's output down to the sound card's input.
//
// The signal is shifted by the oscillator to the board's intermediate frequency, filtered there, and shifted
// to 12 kHz. With the oscillator above the signal its spectrum comes out inverted, as a mixer does it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/SampleSource.h"
#include "sim/SimulatedBand.h"
#include "sim/SimulatedChip.h"

namespace quorl {

enum class BoardOutput {
  RealIf,      // the 12 kHz IF on the left channel, silence on the right one
  Quadrature,  // I on the left, Q on the right channel
};

struct BoardSettings {
  double IntermediateHz = 45e6;
  BoardOutput Output = BoardOutput::RealIf;
  // Which of the oscillator's two neighbours the preselector passes where both lie within the antenna's
  // range: the one below the oscillator, or (true) the one above it. The other comes through weaker by the
  // rejection.
  bool LowSideInjection = false;
  double ImageRejectionDb = 50.0;
  double LowestHz = 5e3, HighestHz = 32e6;  // the antenna input's range
  double FullScaleDbm = -40.0;              // a carrier that just fills the sound card
  // Faults of a Quadrature board's Q channel against I.
  double AmplitudeErrorDb = 0.0;
  double PhaseErrorDegrees = 0.0;
};

// The board of receiver model 0 to 3: 45 MHz IF with an AD9951 for 0, 2 and 3, 455 kHz with an AD9835 for 1.
BoardSettings BoardOfModel(int sdrModelNo);

class SimulatedBoard final : public SampleSource {
 public:
  // `chip` outlives the board.
  SimulatedBoard(const SimulatedChip& chip, std::unique_ptr<SimulatedBand> band,
                 const BoardSettings& settings);

  // Another board takes this one's place at the antenna, which goes on. `chip` outlives it.
  void Become(const SimulatedChip& chip, const BoardSettings& settings);
  const BoardSettings& Settings() const { return settings_; }
  // Asks the chip for its frequency, then renders from the present position on. Where the frequency has
  // changed, the phase of every signal goes on without a jump. While the chip gives no signal: noise.
  void Render(std::int16_t* interleaved, int frames) override;
  // Goes to `second` (0 or more) of the evening. Rendering from there gives the samples that rendering up to
  // there and on would have given at this tuning.
  void Seek(double second);
  double PositionSeconds() const;
  // The I/Q faults, for trimming at run time.
  void SetQuadratureError(double amplitudeDb, double phaseDegrees);

 private:
  static constexpr int kTaps = 53;
  static constexpr int kHistory = kTaps - 1;
  // A frequency of the antenna that the mixer brings to the IF; slot 0 is the wanted one, 1 the image.
  struct Response {
    bool Active = false;
    SimulatedBand::Window Window;
  };
  using Samples = std::array<float, kHistory + kChunkFrames>;

  std::array<Response, 2> ResponsesTo(double oscillatorHz) const;
  void TakeSettings();
  void FollowChip();
  void BeginChunk(std::int64_t chunk);
  void Compose(std::int64_t chunk, int from);
  void Emit(int at, std::int16_t* frame) const;

  const SimulatedChip* chip_;
  std::unique_ptr<SimulatedBand> band_;
  BoardSettings settings_;
  double gain_ = 0.0;  // from amplitude 1 at 0 dBm to sample values
  std::array<float, kTaps> taps_{};
  float quadratureDirect_ = 1.0F, quadratureCross_ = 0.0F;

  std::int64_t position_ = 0;  // of the next sample
  std::int64_t chunk_ = -1;    // the one that stands in the arrays
  std::optional<double> oscillatorHz_;
  std::array<Response, 2> responses_{};
  Samples mixI_{}, mixQ_{};  // before the IF filter, with its history ahead
  std::array<float, kChunkFrames> ifI_{}, ifQ_{};
};

}  // namespace quorl
