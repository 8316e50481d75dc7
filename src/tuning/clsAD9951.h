// Driver of the AD9951 DDS chip: turns a frequency into the chip's register writes.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "tuning/Oscillator.h"
#include "tuning/clsDDSSerialIF.h"

namespace quorl {

// Each register write is an instruction byte and its data, the highest byte first, ended by the edge of the
// IO update line. The clock is that of the chip's core, behind the reference multiplier.
class clsAD9951 : public Oscillator {
 public:
  clsAD9951(SettingsStore& settings, Dialogs& dialogs);

  // The lines to the chip. Without them nothing is sent, and nothing said.
  std::shared_ptr<clsDDSSerialIF> IFHandler;

  bool CanSend() const override { return HasFactor() && IFHandler && IFHandler->IsOpen(); }
  // Restores the clock, and tells where the stored one is wrong.
  Failure RestoreSettings() { return RestoreClock(); }
  // Writes control function registers 1 and 2. Dropped while CMDOutActive.
  Failure Initialise() override;
  // The last frequency command once more; before the first one only the update line moves.
  void Refresh() override;

 private:
  void SendTuningWord(std::int32_t word) override;
  bool SendCommand(std::span<const std::uint8_t> command);

  std::vector<std::uint8_t> lastCommand_;
  std::optional<std::int32_t> lastWord_;  // the one that lastCommand_ carries
  bool sending_ = false;
};

}  // namespace quorl
