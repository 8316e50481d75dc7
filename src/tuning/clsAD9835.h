// Driver of the AD9835 DDS chip: turns a frequency into the chip's 16-bit command words.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "tuning/DDSInterface.h"
#include "tuning/Oscillator.h"

namespace quorl {

// A frequency goes out as seven words that reset the chip, load it through its defer register and start it
// again; each word is framed by the select line, which rests at 1.
class clsAD9835 : public Oscillator {
 public:
  // The clock is 50 MHz unless the store holds another one.
  clsAD9835(SettingsStore& settings, Dialogs& dialogs);

  // The lines to the chip, serial or parallel. Without them SetFrequency sends nothing.
  std::shared_ptr<DDSInterface> IFHandler;

  bool CanSend() const override { return HasFactor() && IFHandler && IFHandler->IsOpen(); }
  // Restores the clock, and tells where the stored one is wrong; sends nothing, as the frame of SetFrequency
  // sets up the whole chip. Dropped while CMDOutActive.
  Failure Initialise() override;
  // Frequency frames are not kept, so this only moves the select line; a message tells of a missing
  // IFHandler.
  void Refresh() override;

 private:
  void SendTuningWord(std::int32_t word) override;
  void SendCommand(const std::vector<std::uint8_t>& command);

  std::vector<std::uint8_t> lastCommand_;
  bool sending_ = false;
};

}  // namespace quorl
