// The printer port through the parport driver, or through the processor's own port access.
#pragma once

#include <string>

#include "platform/PrinterPort.h"
#include "platform/linux/lines/PrinterCalls.h"

namespace quorl {

// The way to an address is chosen when it is first checked or written, and kept until another one is: the
// driver's port of that address (works for members of group lp), else raw access (needs privileges), else
// none, and every write to it is ignored.
class LinuxPrinterPort : public PrinterPort {
 public:
  enum class Access { None, Driver, Raw };

  // `calls` outlives the port.
  explicit LinuxPrinterPort(PrinterCalls& calls) : calls_(calls) {}
  ~LinuxPrinterPort() override { Leave(); }

  Failure Check(std::uint16_t address) override;
  void Write(std::uint16_t address, std::uint8_t value) override;
  // How `address` is reached, without a write to it.
  Access Prepare(std::uint16_t address);

 private:
  bool TakeDriver(std::uint16_t address);
  void Leave();

  PrinterCalls& calls_;
  bool chosen_ = false;
  std::uint16_t address_ = 0;
  Access access_ = Access::None;
  int file_ = -1;
};

}  // namespace quorl
