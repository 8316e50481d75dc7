// A printer port made of memory: keeps what was written to its pins.
#pragma once

#include <chrono>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/LineListener.h"
#include "platform/PrinterPort.h"
#include "platform/virtual/VirtualClock.h"

namespace quorl {

// One write.
struct PrinterLevel {
  std::int64_t Microsecond = 0;
  std::uint16_t Address = 0;
  std::uint8_t Value = 0;
  bool Changed = false;  // false where the pins already stood so

  bool operator==(const PrinterLevel&) const = default;
};

// One connector that answers at every address, until it is made to fail; a test looks at
// PrinterLevel::Address.
class VirtualPrinterPort : public PrinterPort {
 public:
  explicit VirtualPrinterPort(VirtualClock& clock) : clock_(clock) {}

  Failure Check(std::uint16_t) override { return failure_; }
  void Write(std::uint16_t address, std::uint8_t value) override;

  // What Check says; empty is a port that is there.
  void FailCheck(Failure failure) { failure_ = std::move(failure); }
  // Null takes the listener away. It must outlive its time here.
  void SetListener(LineListener* listener) { listener_ = listener; }
  // Time that the clock moves on with each write. 0 at creation.
  void SetWriteTime(std::chrono::microseconds time) { writeTime_ = time; }
  // The writes so far, oldest first. A long run had better switch the recording off.
  const std::vector<PrinterLevel>& Levels() const { return levels_; }
  void ClearLevels() { levels_.clear(); }
  void SetRecording(bool on) { recording_ = on; }
  std::uint8_t Value() const { return value_; }

 private:
  VirtualClock& clock_;
  LineListener* listener_ = nullptr;
  Failure failure_;
  bool recording_ = true;
  std::uint8_t value_ = 0;
  std::chrono::microseconds writeTime_{0};
  std::vector<PrinterLevel> levels_;
};

}  // namespace quorl
