#include "sim/SimulatedReceiver.h"

#include "sim/SimulatedAD9835.h"
#include "sim/SimulatedAD9951.h"

namespace quorl {
namespace {

constexpr double kAd9951Multiplier = 8.0;

std::unique_ptr<SimulatedChip> ChipOfModel(int sdrModelNo) {
  if (sdrModelNo == 1) return std::make_unique<SimulatedAD9835>(kAd9835BoardClockHz);
  return std::make_unique<SimulatedAD9951>(kAd9951BoardClockHz / kAd9951Multiplier);
}

}  // namespace

SimulatedReceiver::SimulatedReceiver(int sdrModelNo, std::unique_ptr<SimulatedBand> band,
                                     const BoardSettings& settings)
    : chip_(ChipOfModel(sdrModelNo)), wiring_(*chip_), board_(*chip_, std::move(band), settings) {}

}  // namespace quorl
