// Turns the two lines of a shaft encoder into steps up and down, and its speed into a tuning step.
#pragma once

#include <array>
#include <cstdint>

namespace quorl {

// One quadrature encoder on CTS and DSR.
class ShaftDecoder {
 public:
  // `status` is the port's status word at a change of its lines. 1 is a step up, -1 a step down, 0 nothing:
  // the lines stand as they did, or both changed at once and the direction can't be told.
  int Decode(std::uint32_t status);
  // The last two line states, the older one in bits 3 and 2.
  int Code() const { return code_; }

 private:
  int lines_ = 0;
  int code_ = 0;
};

struct ShaftStep {
  double TuneStep = 0;     // dHz
  double TuneStepLSD = 0;  // dHz
};

// The step that goes with the encoder's speed: the mean of the last five intervals between its steps.
class ShaftAutoRate {
 public:
  ShaftAutoRate();
  // `microseconds` since the step before.
  ShaftStep StepAfter(double microseconds);

 private:
  std::array<double, 25> ShaftIntervals;  // microseconds, the newest first
};

}  // namespace quorl
