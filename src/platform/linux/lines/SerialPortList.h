// The serial ports that this machine has, for people to choose from.
#pragma once

#include <string>
#include <vector>

#include "platform/SerialPort.h"

namespace quorl {

// Adapters by their lasting names, then built-in ports with hardware behind them, then adapters without a
// lasting name; each device once, sorted by path. No port is opened: that would move its lines. `root` is put
// before /dev and /sys.
std::vector<SerialPortInfo> ListSerialPorts(const std::string& root = "");

}  // namespace quorl
