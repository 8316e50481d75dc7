// A machine for tuning tests, and an ear on its wire.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "config/SettingsStore.h"
#include "rigs/VirtualDesk.h"

namespace quorl {

// Reads frames of bytes off the lines: bits are taken at the rising clock while the select signal is 0, and a
// frame ends when it goes to 1. It knows nothing of any chip.
class WireTap : public LineListener {
 public:
  using Frame = std::vector<int>;  // bytes; -1 where bits were left over

  void OnSerialLine(SerialLine line, bool on) override {
    switch (line) {
      case SerialLine::Dtr:
        Select(!on);
        break;
      case SerialLine::Rts:
        data_ = !on;
        break;
      case SerialLine::Break:
        Clock(on);
    }
  }
  void OnPrinterData(std::uint8_t value) override {
    Select((value & 4) == 0);
    data_ = (value & 1) == 0;
    Clock((value & 2) != 0);
  }

  std::vector<Frame> Frames;

 private:
  void Select(bool state) {
    if (state && !select_) {
      if (bits_ != 0) frame_.push_back(-1);
      Frames.push_back(frame_);
    }
    if (state != select_) {
      frame_.clear();
      bits_ = byte_ = 0;
    }
    select_ = state;
  }
  void Clock(bool state) {
    if (state && !clock_ && !select_) {
      byte_ = byte_ * 2 + (data_ ? 1 : 0);
      if (++bits_ == 8) {
        frame_.push_back(byte_);
        bits_ = byte_ = 0;
      }
    }
    clock_ = state;
  }

  bool select_ = true, data_ = true, clock_ = false;
  int bits_ = 0, byte_ = 0;
  Frame frame_;
};

struct TuningRig : test::VirtualDesk {
  TuningRig() { Listen(Wire, true); }
  // The frames since the last call.
  std::vector<WireTap::Frame> Sent() { return std::exchange(Wire.Frames, {}); }

  SettingsStore Settings;
  WireTap Wire;
};

}  // namespace quorl
