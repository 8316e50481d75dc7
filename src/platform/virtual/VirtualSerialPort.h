// A serial port made of memory: keeps what was done to its lines and plays the far end of the cable.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/EventQueue.h"
#include "platform/LineListener.h"
#include "platform/SerialPort.h"
#include "platform/virtual/VirtualClock.h"

namespace quorl {

// One call of SetLine on the open port.
struct SerialLevel {
  std::int64_t Microsecond = 0;
  SerialLine Line = SerialLine::Rts;
  bool On = false;
  bool Changed = false;  // false where the line already stood so

  bool operator==(const SerialLevel&) const = default;
};

// The three lines are off when the port opens.
class VirtualSerialPort : public SerialPort {
 public:
  VirtualSerialPort(VirtualClock& clock, EventQueue& queue);

  Failure Open(const std::string& device) override;
  void Close() override;
  bool IsOpen() const override { return open_; }
  std::vector<SerialPortInfo> List() const override { return Ports; }
  void SetLine(SerialLine line, bool on) override;
  std::optional<std::uint32_t> Status() const override;
  void OnStatusChange(std::function<void()> handler) override { onStatusChange_ = std::move(handler); }
  void OnPresence(std::function<void(const Failure& vanished)> handler) override {
    onPresence_ = std::move(handler);
  }

  std::vector<SerialPortInfo> Ports;  // that this machine is said to have

  // Null takes the listener away. It must outlive its time here.
  void SetListener(LineListener* listener) { listener_ = listener; }
  // The next Open calls fail with it; empty lets them succeed again.
  void FailOpen(Failure failure) { openFailure_ = std::move(failure); }
  // The adapter is pulled out of the open port, and later put back: each is told from the queue.
  void Unplug();
  void Plug();
  // ModemStatus bits of the input lines. A change of CTS or DSR on the open port posts one call of the
  // status handler.
  void SetStatus(std::uint32_t bits);
  // Status() answers nothing, as a driver does that can't read the lines.
  void FailStatus(bool on) { statusFails_ = on; }
  // Time that the clock moves on with each SetLine: what a driver call costs. 0 at creation.
  void SetLineTime(std::chrono::microseconds time) { lineTime_ = time; }

  // The levels set so far, oldest first. A long run had better switch the recording off.
  const std::vector<SerialLevel>& Levels() const { return levels_; }
  void ClearLevels() { levels_.clear(); }
  void SetRecording(bool on) { recording_ = on; }
  bool Line(SerialLine line) const { return lines_[static_cast<std::size_t>(line)]; }
  // Paths of all Open calls, failed ones too.
  const std::vector<std::string>& OpenedDevices() const { return opened_; }

 private:
  VirtualClock& clock_;
  EventQueue& queue_;
  LineListener* listener_ = nullptr;
  bool open_ = false;
  bool recording_ = true;
  bool statusFails_ = false;
  bool lines_[3] = {};
  std::uint32_t status_ = 0;
  std::chrono::microseconds lineTime_{0};
  Failure openFailure_;
  std::function<void()> onStatusChange_;
  std::function<void(const Failure&)> onPresence_;
  std::unique_ptr<QueueSignal> statusSignal_;
  std::vector<SerialLevel> levels_;
  std::vector<std::string> opened_;
};

}  // namespace quorl
