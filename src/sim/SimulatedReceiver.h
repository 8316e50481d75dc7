// A whole receiver board behind a cable: chip, wiring, mixer and antenna, ready to be plugged into a port.
#pragma once

#include <memory>

#include "platform/LineListener.h"
#include "sim/ChipWiring.h"
#include "sim/SimulatedBand.h"
#include "sim/SimulatedBoard.h"
#include "sim/SimulatedChip.h"

namespace quorl {

// Clocks of the boards: of the AD9951's core behind its multiplier of 8, and of the AD9835.
constexpr double kAd9951BoardClockHz = 360096000.0;
constexpr double kAd9835BoardClockHz = 50000000.0;

class SimulatedReceiver {
 public:
  // `sdrModelNo` 0 to 3 chooses the chip; `settings` comes from BoardOfModel, changed or not.
  SimulatedReceiver(int sdrModelNo, std::unique_ptr<SimulatedBand> band, const BoardSettings& settings);

  // The board of another model is plugged in: the same cable, antenna and preselector, and a clock with the
  // same error. Its chip waits to be set up. Chip() is another one then.
  void SetModel(int sdrModelNo);
  // Parts per million; a chip that is plugged in later has it too.
  void SetClockError(double partsPerMillion);

  // For SetListener of the port that tunes the board.
  LineListener& Cable() { return wiring_; }
  SimulatedChip& Chip() { return *chip_; }
  // What the sound card's input is connected to.
  SimulatedBoard& Board() { return board_; }

 private:
  int model_;
  double clockError_ = 0.0;
  std::unique_ptr<SimulatedChip> chip_;
  ChipWiring wiring_;
  SimulatedBoard board_;
};

}  // namespace quorl
