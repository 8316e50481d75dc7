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
    : model_(sdrModelNo),
      chip_(ChipOfModel(sdrModelNo)),
      wiring_(*chip_),
      board_(*chip_, std::move(band), settings) {}

void SimulatedReceiver::SetModel(int sdrModelNo) {
  if (sdrModelNo == model_) return;
  model_ = sdrModelNo;
  std::unique_ptr<SimulatedChip> chip = ChipOfModel(sdrModelNo);
  chip->SetClockError(clockError_);
  BoardSettings settings = BoardOfModel(sdrModelNo);
  settings.LowSideInjection = board_.Settings().LowSideInjection;
  wiring_.Plug(*chip);
  board_.Become(*chip, settings);
  chip_ = std::move(chip);
}

void SimulatedReceiver::SetClockError(double partsPerMillion) {
  clockError_ = partsPerMillion;
  chip_->SetClockError(partsPerMillion);
}

}  // namespace quorl
