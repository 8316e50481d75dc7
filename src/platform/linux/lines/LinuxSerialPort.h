// A tty as six lines: RTS, DTR and break out, CTS, DSR, ring and carrier in.
#pragma once

#include <memory>

#include "platform/EventQueue.h"
#include "platform/SerialPort.h"
#include "platform/linux/lines/SerialCalls.h"

namespace quorl {

// Opening leaves the line settings (rate, parity, ...) alone and puts RTS and DTR on and break off: what the
// driver does to RTS and DTR anyway, so that no edge is added, and a receiver board sees its three lines at
// rest.
//
// While the port is open one thread waits for the input lines; where the driver can't wait, it looks every 5
// ms. Changes that follow each other faster than the queue runs reach the handler as one. A driver without
// modem lines has no status and no changes.
class LinuxSerialPort : public SerialPort {
 public:
  // Both outlive the port.
  LinuxSerialPort(EventQueue& queue, SerialCalls& calls);
  ~LinuxSerialPort() override;

  Failure Open(const std::string& device) override;
  void Close() override;
  bool IsOpen() const override { return file_ >= 0; }
  void SetLine(SerialLine line, bool on) override;
  std::optional<std::uint32_t> Status() const override;
  void OnStatusChange(std::function<void()> handler) override;

 private:
  class Watcher;

  SerialCalls& calls_;
  int file_ = -1;
  std::function<void()> onStatusChange_;
  std::unique_ptr<QueueSignal> changed_;
  std::unique_ptr<Watcher> watcher_;
};

}  // namespace quorl
