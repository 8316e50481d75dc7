#include "platform/virtual/VirtualPrinterPort.h"

namespace quorl {

void VirtualPrinterPort::Write(std::uint16_t address, std::uint8_t value) {
  clock_.Advance(writeTime_);
  const bool changed = value_ != value;
  value_ = value;
  if (recording_) {
    levels_.push_back({clock_.Microseconds(), address, value, changed});
  }
  if (changed && listener_) listener_->OnPrinterData(value);
}

}  // namespace quorl
