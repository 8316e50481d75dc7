#include "sim/ChipWiring.h"

namespace quorl {

void ChipWiring::OnSerialLine(SerialLine line, bool on) {
  switch (line) {
    case SerialLine::Dtr:
      chip_->SetPin(ChipPin::Select, !on);
      return;
    case SerialLine::Rts:
      chip_->SetPin(ChipPin::Data, !on);
      return;
    case SerialLine::Break:
      chip_->SetPin(ChipPin::Clock, on);
      return;
  }
}

void ChipWiring::OnPrinterData(std::uint8_t value) {
  // The clock last: whatever changes together with it is in place at its edge.
  chip_->SetPin(ChipPin::Data, (value & 1U) == 0);
  chip_->SetPin(ChipPin::Select, (value & 4U) == 0);
  chip_->SetPin(ChipPin::Clock, (value & 2U) == 0);
}

}  // namespace quorl
