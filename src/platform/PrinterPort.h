// The data register of a PC printer port.
#pragma once

#include <cstdint>

namespace quorl {

class PrinterPort {
 public:
  virtual ~PrinterPort() = default;
  // Puts D7..D0 on the pins of the port at `address` (0x378 is the first one). Errors are not reported:
  // the pins have no way to answer.
  virtual void Write(std::uint16_t address, std::uint8_t value) = 0;
};

}  // namespace quorl
