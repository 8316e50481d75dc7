// The demo's receiver board: a simulated one behind a port made of memory, with the band of the demo's data.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "config/SettingsStore.h"
#include "platform/EventQueue.h"
#include "platform/Files.h"
#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualPrinterPort.h"
#include "platform/virtual/VirtualSerialPort.h"
#include "sim/SimulatedReceiver.h"

namespace quorl {

class DemoBoard {
 public:
  struct Options {
    std::int32_t SDRModelNo = 0;
    bool LowSideLO = false;  // what the preselector passes
    double ErrorPpm = 0.0;   // of the board's clock
    std::string DataFolder;  // holds stations.ini and speech/
  };

  // Null with `failure` set where the demo's data is missing or broken.
  static std::unique_ptr<DemoBoard> Create(const Options& options, const Files& files, EventQueue& queue,
                                           Failure& failure);

  SerialPort& Serial() { return serial_; }
  PrinterPort& Printer() { return printer_; }
  // What the sound card hears.
  SampleSource& Antenna() { return receiver_.Board(); }
  SimulatedReceiver& Receiver() { return receiver_; }

 private:
  DemoBoard(const Options& options, std::unique_ptr<SimulatedBand> band, EventQueue& queue);

  SimulatedReceiver receiver_;
  VirtualClock lineClock_;  // stamps recorded line levels; the demo records none
  VirtualSerialPort serial_;
  VirtualPrinterPort printer_;
};

// Writes into a store what it lacks: the DDS clocks of the demo boards, a station to begin with, and that the
// radio switches on by itself.
void PutDemoDefaults(SettingsStore& store);

}  // namespace quorl
