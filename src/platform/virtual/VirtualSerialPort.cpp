#include "platform/virtual/VirtualSerialPort.h"

#include <algorithm>

namespace quorl {

VirtualSerialPort::VirtualSerialPort(VirtualClock& clock, EventQueue& queue)
    : clock_(clock), queue_(queue), statusSignal_(queue_.CreateSignal([this] {
        if (open_ && onStatusChange_) onStatusChange_();
      })) {}

Failure VirtualSerialPort::Open(const std::string& device) {
  opened_.push_back(device);
  if (openFailure_) return openFailure_;
  open_ = true;
  std::fill(std::begin(lines_), std::end(lines_), false);
  return {};
}

void VirtualSerialPort::Close() {
  open_ = false;
}

void VirtualSerialPort::Unplug() {
  Close();
  queue_.Post([this] {
    if (onPresence_) {
      onPresence_(Error{5, "The serial port " + opened_.back() + " has vanished"});
    }
  });
}

void VirtualSerialPort::Plug() {
  open_ = true;
  std::fill(std::begin(lines_), std::end(lines_), false);
  queue_.Post([this] {
    if (onPresence_) {
      onPresence_({});
    }
  });
}

void VirtualSerialPort::SetLine(SerialLine line, bool on) {
  if (!open_) return;
  clock_.Advance(lineTime_);
  bool& level = lines_[static_cast<std::size_t>(line)];
  const bool changed = level != on;
  level = on;
  if (recording_) {
    levels_.push_back({clock_.Microseconds(), line, on, changed});
  }
  if (changed && listener_) listener_->OnSerialLine(line, on);
}

std::optional<std::uint32_t> VirtualSerialPort::Status() const {
  if (!open_ || statusFails_) {
    return {};
  }
  return status_;
}

void VirtualSerialPort::SetStatus(std::uint32_t bits) {
  const std::uint32_t changed = status_ ^ bits;
  status_ = bits;
  if (open_ && (changed & (ModemStatus::Cts | ModemStatus::Dsr)) != 0) statusSignal_->Raise();
}

}  // namespace quorl
