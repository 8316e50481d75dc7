// A serial port as three output lines and four input lines; no character is ever sent.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "support/Error.h"

namespace quorl {

enum class SerialLine { Rts, Dtr, Break };

// Bits of the modem status word.
struct ModemStatus {
  static constexpr std::uint32_t Cts = 0x10, Dsr = 0x20, Ring = 0x40, Carrier = 0x80;
};

struct SerialPortInfo {
  std::string Path;    // what to open: the name that stays with the adapter where it has one
  std::string Device;  // the driver's name, such as /dev/ttyUSB0; may equal Path
};

class SerialPort {
 public:
  virtual ~SerialPort() = default;
  // `device` is a path such as /dev/ttyS0. Exclusive; the port's own settings stay as they are. A device
  // whose output lines can't be moved is refused.
  virtual Failure Open(const std::string& device) = 0;
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;
  // The ports that are there now, without opening any: that would move its lines.
  virtual std::vector<SerialPortInfo> List() const = 0;
  // True asserts the line (for Break: holds the break state). A closed port ignores it.
  virtual void SetLine(SerialLine line, bool on) = 0;
  // ModemStatus bits now; empty where the port is closed or the driver refuses.
  virtual std::optional<std::uint32_t> Status() const = 0;
  // `handler` runs on the event queue's thread at each change of CTS or DSR while the port is open.
  virtual void OnStatusChange(std::function<void()> handler) = 0;
  // `handler` runs on the event queue's thread when the open port vanishes, with a line for the user, and
  // with nothing when it has been taken again. In between the port is not open.
  virtual void OnPresence(std::function<void(const Failure& vanished)> handler) = 0;
};

}  // namespace quorl
