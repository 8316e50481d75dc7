// A tty as six lines: RTS, DTR and break out, CTS, DSR, ring and carrier in.
#pragma once

#include <memory>
#include <string>

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
// input lines has no status and no changes; one without output lines is refused.
//
// A port whose adapter was pulled out shows by its next line call, or by the waiting thread. From then on it
// is looked for once a second under the same path, and taken at rest as at its first opening.
class LinuxSerialPort final : public SerialPort {
 public:
  // Both outlive the port.
  LinuxSerialPort(EventQueue& queue, SerialCalls& calls);
  ~LinuxSerialPort() override;

  Failure Open(const std::string& device) override;
  void Close() override;
  bool IsOpen() const override { return file_ >= 0; }
  std::vector<SerialPortInfo> List() const override;
  void SetLine(SerialLine line, bool on) override;
  std::optional<std::uint32_t> Status() const override;
  void OnStatusChange(std::function<void()> handler) override;
  void OnPresence(std::function<void(const Failure& vanished)> handler) override;

 private:
  class Watcher;

  Failure Take();
  Failure RestLines();
  void OnSignal();
  void TellLoss();
  void OnLineCall(int result);
  void Vanish();
  void LookAgain();
  void Leave();

  SerialCalls& calls_;
  std::string device_;
  int file_ = -1;
  bool untold_ = false;  // the port has vanished, and nobody has heard it yet
  std::function<void()> onStatusChange_;
  std::function<void(const Failure&)> onPresence_;
  std::unique_ptr<QueueSignal> changed_;
  std::unique_ptr<QueueTimer> lookAgain_;
  std::unique_ptr<Watcher> watcher_;
};

}  // namespace quorl
