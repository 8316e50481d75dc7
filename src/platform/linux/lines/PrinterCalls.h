// The system calls on a printer port, one by one, so that a test can stand in for the hardware.
#pragma once

#include <cstdint>
#include <vector>

namespace quorl {

struct PrinterPortNumber {
  int Number = 0;             // of /dev/parport<Number>
  std::uint16_t Address = 0;  // of its data register
};

// Calls that can fail give false, or a negative number from OpenPort.
class PrinterCalls {
 public:
  virtual ~PrinterCalls() = default;
  // The ports that the parport driver knows.
  virtual std::vector<PrinterPortNumber> List() = 0;
  virtual int OpenPort(int number) = 0;
  virtual void ClosePort(int file) = 0;
  virtual bool Claim(int file) = 0;
  virtual void Release(int file) = 0;
  virtual bool WriteData(int file, std::uint8_t value) = 0;
  // Permission for the processor to write to the register itself; false on machines without such registers.
  virtual bool AllowRaw(std::uint16_t address, bool on) = 0;
  virtual void WriteRaw(std::uint16_t address, std::uint8_t value) = 0;
};

class LinuxPrinterCalls : public PrinterCalls {
 public:
  std::vector<PrinterPortNumber> List() override;
  int OpenPort(int number) override;
  void ClosePort(int file) override;
  bool Claim(int file) override;
  void Release(int file) override;
  bool WriteData(int file, std::uint8_t value) override;
  bool AllowRaw(std::uint16_t address, bool on) override;
  void WriteRaw(std::uint16_t address, std::uint8_t value) override;
};

}  // namespace quorl
