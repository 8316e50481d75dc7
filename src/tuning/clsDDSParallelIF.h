// The way to the DDS chip over three data pins of a printer port.
#pragma once

#include <cstdint>
#include <string>

#include "config/SettingsStore.h"
#include "platform/EventQueue.h"
#include "platform/PrinterPort.h"
#include "tuning/DDSInterface.h"

namespace quorl {

// D0 is the data pin, D1 the clock, D2 IO update or frame select; the board's buffer inverts. Every access
// writes all three. There is no way back: nothing tells whether a port is there.
class clsDDSParallelIF : public DDSInterface {
 public:
  clsDDSParallelIF(PrinterPort& port, EventQueue& events, SettingsStore& settings);
  clsDDSParallelIF(const clsDDSParallelIF&) = delete;
  clsDDSParallelIF& operator=(const clsDDSParallelIF&) = delete;

  static constexpr std::uint16_t kDefaultPortAddress = 0x378;
  static constexpr double kDefaultWaitTime = 1.0 / 230400;

  std::string Name = "clsDDSParallelIF";            // section of the settings
  std::uint16_t PortAddress = kDefaultPortAddress;  // 0x378 is the first printer port
  double WaitTime = kDefaultWaitTime;               // seconds; 0 switches the yield inside each bit off
  bool NonInverting = false;                        // every line then always takes its state 0

  void RestoreSettings();
  // Stores PortAddress, WaitTime and NonInverting.
  void Save() const;
  bool IsOpen() const override { return true; }

  void IOUPD(int State) override;
  // One data bit with its clock pulse.
  void SDATA(int State) { SendDataBit(State); }
  // Drops all three lines, whatever `State`.
  void SCLCK(int State);
  void Out8(std::uint8_t ByteToSend) override;
  int Send(std::uint8_t ByteToSend) override;
  // One frame of 16 bits with its own select, which is high while IOUPD's is low.
  void Out16(std::uint16_t WordToSend);
  // As Out16 with 32 rounds, of which the first sixteen send 0: a bit is looked at as a 16-bit number.
  void Out32(std::uint32_t WordToSend);
  void StartSequence();
  void EndSequence();
  // Lets the event queue run once unless `DELAYTIME` is 0.
  void Delay(double DELAYTIME);

  // Nothing to do on a printer port; all give 0.
  std::int32_t OpenPort(bool) { return 0; }
  void ClosePort() {}
  int Initialise() { return 0; }
  std::uint32_t GetEncoderBits() const { return 0; }
  std::uint32_t GetEncoderB0() const { return 0; }
  std::uint32_t GetEncoderB1() const { return 0; }
  double TimeRead() const { return 0; }

 private:
  bool IsPositive(int state) const;
  void Write(std::uint8_t value) { port_.Write(PortAddress, value); }
  void SendDataBit(int bit);
  void SetClock();
  void SetFSync(int state);

  PrinterPort& port_;
  EventQueue& events_;
  SettingsStore& settings_;
};

}  // namespace quorl
