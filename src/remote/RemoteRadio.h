// What a client on the network asks of the radio. Whoever owns a radio makes one for the server.
#pragma once

#include <cstdint>
#include <string>

namespace quorl {

// The modes that clients know. CW is the upper sideband through the narrowest filter; what only this radio
// has is told as the AM that it resembles.
enum class RemoteMode { AM, CW, USB, LSB, FM };

enum class RemoteOutcome {
  Done,
  OutOfRange,   // beyond what the radio can do; nothing has changed
  Refused,      // not now: a recording of the band plays; nothing has changed
  Unreachable,  // noted, but the board or the sound device that it is for can't be reached
};

class RemoteRadio {
 public:
  static constexpr std::int32_t kUsualWidth = 0, kSameWidth = -1;  // of SetMode

  virtual ~RemoteRadio() = default;
  RemoteRadio(const RemoteRadio&) = delete;
  RemoteRadio& operator=(const RemoteRadio&) = delete;

  // What to call the radio, in one line.
  virtual std::string Description() const = 0;

  // Hz: the frequency that was asked for last, by whomever, and the highest one that can be tuned.
  virtual double Frequency() const = 0;
  virtual double HighestFrequency() const = 0;
  // Hz, from 0. A frame takes its time on the wire, and other events are delivered meanwhile, those of other
  // clients among them.
  virtual RemoteOutcome Tune(double hertz) = 0;

  virtual RemoteMode Mode() const = 0;
  virtual std::int32_t Passband() const = 0;  // Hz
  // `width` in Hz: the filter whose name is nearest, or one of the constants above.
  virtual RemoteOutcome SetMode(RemoteMode mode, std::int32_t width) = 0;

  virtual std::int32_t Strength() const = 0;  // dB over S9
  virtual double Volume() const = 0;          // 0 to 1, the place between both ends of the control
  virtual void SetVolume(double place) = 0;   // likewise

  virtual bool IsOn() const = 0;
  // May deliver other events, as Tune does.
  virtual RemoteOutcome SwitchPower(bool on) = 0;

 protected:
  RemoteRadio() = default;
};

}  // namespace quorl
