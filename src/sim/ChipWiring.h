// The cable between a port of the computer and the pins of a chip.
//
// Serial port: DTR drives the select pin and RTS the data pin through inverting level shifters, the break
// state of the transmit line drives the clock pin as it is. Printer port: D2, D0 and D1 drive select, data
// and clock through an inverting buffer.
#pragma once

#include "platform/LineListener.h"
#include "sim/SimulatedChip.h"

namespace quorl {

class ChipWiring final : public LineListener {
 public:
  explicit ChipWiring(SimulatedChip& chip) : chip_(&chip) {}
  // To the pins of another chip, which has seen nothing of what went before.
  void Plug(SimulatedChip& chip) { chip_ = &chip; }

  void OnSerialLine(SerialLine line, bool on) override;
  void OnPrinterData(std::uint8_t value) override;

 private:
  SimulatedChip* chip_;
};

}  // namespace quorl
