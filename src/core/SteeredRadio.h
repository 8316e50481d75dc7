// The radio as clients on the network steer it: by the verbs that the panel uses, so that the panel follows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/LiveRadio.h"
#include "remote/RemoteRadio.h"

namespace quorl {

// What is another one where the radio has a panel.
struct SteeredRadioLinks {
  std::function<bool()> IsOn;
  std::function<void(bool on)> SwitchPower;
  std::function<float()> SignalLevel;  // over the noise floor, in 16-bit units, while the radio is on
};

class SteeredRadio final : public RemoteRadio {
 public:
  // The radio outlives this. Without links the power is the sound's, and the S-meter has its usual floor.
  explicit SteeredRadio(LiveRadio& radio);
  SteeredRadio(LiveRadio& radio, SteeredRadioLinks links);

  std::string Description() const override;
  double Frequency() const override;
  double HighestFrequency() const override;
  RemoteOutcome Tune(double hertz) override;
  RemoteMode Mode() const override;
  std::int32_t Passband() const override;
  RemoteOutcome SetMode(RemoteMode mode, std::int32_t width) override;
  std::int32_t Strength() const override;
  double Volume() const override;
  void SetVolume(double place) override;
  bool IsOn() const override { return links_.IsOn(); }
  RemoteOutcome SwitchPower(bool on) override;

 private:
  LiveRadio& radio_;
  SteeredRadioLinks links_;
};

}  // namespace quorl
