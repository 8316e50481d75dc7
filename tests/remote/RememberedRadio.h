// A radio that does nothing but remember what was asked of it.
#pragma once

#include <functional>

#include "remote/RemoteRadio.h"

namespace quorl::test {

class RememberedRadio final : public RemoteRadio {
 public:
  double Hertz = 145000000, Highest = 1350479999 / 10.0;
  RemoteMode Set = RemoteMode::FM;
  std::int32_t Width = 15000;
  std::int32_t Decibels = -5;
  double Place = 0.5;
  bool On = true;
  RemoteOutcome Outcome = RemoteOutcome::Done;  // of what changes something
  std::function<void()> DuringFrame = [] {};    // other events while a frame is on the wire

  std::string Description() const override { return "a radio"; }
  double Frequency() const override { return Hertz; }
  double HighestFrequency() const override { return Highest; }
  RemoteOutcome Tune(double hertz) override {
    if (hertz < 0 || hertz > Highest) return RemoteOutcome::OutOfRange;
    if (Outcome != RemoteOutcome::Refused) Hertz = hertz;
    DuringFrame();
    return Outcome;
  }
  RemoteMode Mode() const override { return Set; }
  std::int32_t Passband() const override { return Width; }
  RemoteOutcome SetMode(RemoteMode mode, std::int32_t width) override {
    Set = mode;
    if (width != kSameWidth) Width = width;
    return Outcome;
  }
  std::int32_t Strength() const override { return Decibels; }
  double Volume() const override { return Place; }
  void SetVolume(double place) override { Place = place; }
  bool IsOn() const override { return On; }
  RemoteOutcome SwitchPower(bool on) override {
    if (Outcome == RemoteOutcome::Done) On = on;
    return Outcome;
  }
};

}  // namespace quorl::test
