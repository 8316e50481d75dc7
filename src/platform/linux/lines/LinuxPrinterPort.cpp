#include "platform/linux/lines/LinuxPrinterPort.h"

#include <array>
#include <cerrno>
#include <cstdio>

#include "platform/linux/system/SystemError.h"

namespace quorl {

Failure LinuxPrinterPort::Check(std::uint16_t address) {
  if (Prepare(address) != Access::None) return {};
  std::array<char, 8> digits{};
  std::snprintf(digits.data(), digits.size(), "0x%X", unsigned{address});
  return SystemError("reach the printer port at address " + std::string(digits.data()), EACCES,
                     "Load the module ppdev, add your user to the group lp and log in again.");
}

void LinuxPrinterPort::Write(std::uint16_t address, std::uint8_t value) {
  switch (Prepare(address)) {
    case Access::Driver:
      calls_.WriteData(file_, value);
      break;
    case Access::Raw:
      calls_.WriteRaw(address, value);
      break;
    case Access::None:
      break;
  }
}

LinuxPrinterPort::Access LinuxPrinterPort::Prepare(std::uint16_t address) {
  if (chosen_ && address == address_) return access_;
  Leave();
  chosen_ = true;
  address_ = address;
  if (TakeDriver(address)) {
    access_ = Access::Driver;
  } else if (calls_.AllowRaw(address, true)) {
    access_ = Access::Raw;
  }
  return access_;
}

bool LinuxPrinterPort::TakeDriver(std::uint16_t address) {
  for (const PrinterPortNumber& port : calls_.List()) {
    if (port.Address != address) continue;
    const int file = calls_.OpenPort(port.Number);
    if (file < 0) return false;
    if (calls_.Claim(file)) {
      file_ = file;
      return true;
    }
    calls_.ClosePort(file);
    return false;
  }
  return false;
}

void LinuxPrinterPort::Leave() {
  if (access_ == Access::Driver) {
    calls_.Release(file_);
    calls_.ClosePort(file_);
  }
  if (access_ == Access::Raw) calls_.AllowRaw(address_, false);
  access_ = Access::None;
  file_ = -1;
  chosen_ = false;
}

}  // namespace quorl
