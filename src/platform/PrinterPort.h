// The data register of a PC printer port.
#pragma once

#include <cstdint>

#include "support/Error.h"

namespace quorl {

class PrinterPort {
 public:
  virtual ~PrinterPort() = default;
  // Why a write to `address` would reach no port; nothing where it would. Writes nothing.
  virtual Failure Check(std::uint16_t address) = 0;
  // Puts D7..D0 on the pins of the port at `address` (0x378 is the first one). Errors are not reported:
  // the pins have no way to answer.
  virtual void Write(std::uint16_t address, std::uint8_t value) = 0;
};

}  // namespace quorl
