// What a test's radio stands on: clock, queue, boxes and ports, all of memory.
#pragma once

#include <chrono>
#include <cstdint>

#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualPrinterPort.h"
#include "platform/virtual/VirtualSerialPort.h"

namespace quorl::test {

struct VirtualDesk {
  // The far end of both cables. Levels are recorded where a test looks at them.
  void Listen(LineListener& listener, bool recording) {
    Serial.SetRecording(recording);
    Printer.SetRecording(recording);
    Serial.SetListener(&listener);
    Printer.SetListener(&listener);
  }
  void Run(double seconds) {
    Queue.AdvanceBy(std::chrono::microseconds(static_cast<std::int64_t>(seconds * 1e6)));
  }

  VirtualClock Clock;
  VirtualEventQueue Queue{Clock};
  VirtualDialogs Boxes;
  VirtualSerialPort Serial{Clock, Queue};
  VirtualPrinterPort Printer{Clock};
};

}  // namespace quorl::test
