// The serial ports that a person can choose from: COM1 to COM9, each with the device behind it.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/SerialPort.h"
#include "tuning/clsDDSSerialIF.h"

namespace quorl {

// An adapter that no number leads to gets the lowest one that is free: without a device, without a key of its
// own in the settings, and not the one in use.
class ComPorts {
 public:
  static constexpr int kCount = 9;

  // Looks which device each number leads to, among those that are there.
  void Refresh(const clsDDSSerialIF& serial, const std::vector<SerialPortInfo>& there);
  // For a list: entry i is COM i + 1.
  std::vector<std::string> Names() const;
  // Whether there is a port behind it.
  bool IsThere(int number) const;
  // The device that COM `number` has to be given in the settings before it is opened; empty where it leads
  // there already.
  std::string NewPath(int number) const;

 private:
  struct Port {
    std::string Path;  // empty: nothing is there
    bool IsNew = false;
  };

  std::array<Port, kCount> ports_;
};

// "/dev/serial/by-id/usb-FTDI_FT232R_A50285BI-if00-port0" as "FTDI FT232R A50285BI"; other paths as they are.
std::string PortName(const std::string& path);

}  // namespace quorl
