// The way to the DDS chip over a serial port's control lines, and from a shaft encoder over its status lines.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "config/SettingsStore.h"
#include "platform/Dialogs.h"
#include "platform/EventQueue.h"
#include "platform/SerialPort.h"
#include "tuning/DDSInterface.h"

namespace quorl {

// Signal   line             state 0    state 1
// IOUPD    DTR              asserted   released     the board's level shifters invert these two,
// SDATA    RTS              asserted   released     but not the third
// SCLCK    break of TXD     released   asserted
//
// Where the port vanishes, bytes are refused until it is back; then the signals are at state 0 again.
class clsDDSSerialIF : public DDSInterface {
 public:
  clsDDSSerialIF(SerialPort& port, EventQueue& events, Dialogs& dialogs, SettingsStore& settings);
  // Closes the port.
  ~clsDDSSerialIF() override;
  clsDDSSerialIF(const clsDDSSerialIF&) = delete;
  clsDDSSerialIF& operator=(const clsDDSSerialIF&) = delete;

  static constexpr double kDefaultWaitTime = 1.0 / 230400;

  std::string Name = "clsDDSSerialIF";  // section of the settings
  std::int32_t PortNo = 1;              // COM port, from 1
  double WaitTime = kDefaultWaitTime;   // seconds; 0 switches the yield inside each bit off
  bool EventMode = false;               // status line changes raise OnComm
  // Raised on the main thread at a change of CTS or DSR while a port opened in event mode is open.
  std::function<void()> OnComm;
  // Told when the open port vanishes, with a line for the user, and with nothing when it is back.
  std::function<void(const Failure& vanished)> OnPresence;

  // Opens COM PortNo and brings the three signals to state 0. Returns a handle above 0, or 0 where that
  // failed: a message has told it then, unless `tells` leaves that to the caller. A port that is open stays
  // as it is. Without event mode only the first digit of PortNo counts: the port's name is cut to four
  // characters.
  std::int32_t OpenPort(bool eventMode, bool tells = true);
  // In event mode the handle stays, so that the port can't be opened again in this run.
  void ClosePort();
  std::int32_t hComm() const { return hComm_; }
  // Why the last OpenPort failed; nothing where it didn't.
  const Failure& OpenFailure() const { return openFailure_; }
  int Initialise() { return 0; }
  void RestoreSettings();
  // Stores PortNo and WaitTime.
  void Save() const;
  bool IsOpen() const override { return port_.IsOpen(); }

  void IOUPD(int State) override;
  void SDATA(int State);
  // Only bit 0 of State counts.
  void SCLCK(int State);
  void StartSequence();
  void EndSequence();

  int Send(std::uint8_t ByteToSend) override;
  void Out8(std::uint8_t ByteToSend) override;
  // One frame of 16 bits with its own select; data goes out inverted against Out8.
  void Out16(std::uint16_t WordToSend);
  // One frame of 32 rounds. A round's bit is 1 where `WordToSend` is positive and has any bit set from that
  // place upwards, so the word goes out as its number of leading zeros.
  void Out32(std::int32_t WordToSend);
  // Lets the event queue run once unless `DELAYTIME` is 0. The bit period is what that and the line calls
  // cost.
  void Delay(double DELAYTIME);

  // The port's status word (ModemStatus bits); 0 where it can't be had.
  std::uint32_t GetEncoderBits() const;
  std::uint32_t GetEncoderB0() const { return GetEncoderBits() & 1; }
  std::uint32_t GetEncoderB1() const { return GetEncoderBits() & 2; }

  // Device behind a port name such as "COM1": the value of that key in section Name, else /dev/ttyS0 for
  // COM1 and so on.
  std::string DevicePath(const std::string& portName) const;
  // The settings name a device for that port.
  bool HasOwnDevice(const std::string& portName) const;

 private:
  std::int32_t OpenDevice(const std::string& portName, const std::string& complaint);
  void RestSignals();
  void FollowPresence(const Failure& vanished);
  void ClockPulse();

  SerialPort& port_;
  EventQueue& events_;
  Dialogs& dialogs_;
  SettingsStore& settings_;
  Failure openFailure_;
  std::int32_t hComm_ = 0;  // 0 or less: closed
  bool listening_ = false;  // the port has handlers of this object
  bool vanished_ = false;
};

}  // namespace quorl
