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
  // Stores the clock under "CLKIn" where one has been set.
  ~clsAD9951() override;

  // The lines to the chip. Without them nothing is sent, and nothing said.
  std::shared_ptr<clsDDSSerialIF> IFHandler;

  // Takes the clock from key "ClkIn" of section Name, 50 MHz where there is none. Keeps the old clock where
  // the text is no number; fails as SetClkIn.
  Failure RestoreSettings();
  // Writes control function registers 1 and 2. Dropped while CMDOutActive.
  Failure Initialise() override;
  // The last frequency command once more; before the first one only the update line moves.
  void Refresh() override;

 private:
  void SendTuningWord(std::int32_t word) override;
  void SendCommand(std::span<const std::uint8_t> command);

  std::vector<std::uint8_t> lastCommand_;
  bool sending_ = false;
};

}  // namespace quorl
