// Hears what happens on a port's output lines, as a chip that is wired to them would.
#pragma once

#include <cstdint>

#include "platform/SerialPort.h"

namespace quorl {

// Called at each change of a level, at once and on the thread that moved the line. The lines of a port start
// off (data register 0) and the listener is not told of a level that stays as it is.
class LineListener {
 public:
  virtual ~LineListener() = default;
  virtual void OnSerialLine(SerialLine line, bool on) = 0;
  // D7..D0 of the printer port after the change.
  virtual void OnPrinterData(std::uint8_t value) = 0;
};

}  // namespace quorl
