// The chain from a tuned frequency to the chip, built for one receiver board: VFO, chip driver, line
// interfaces.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "config/SettingsStore.h"
#include "platform/Dialogs.h"
#include "platform/EventQueue.h"
#include "platform/PrinterPort.h"
#include "platform/SerialPort.h"
#include "tuning/Tuner.h"
#include "tuning/clsDDSParallelIF.h"
#include "tuning/clsDDSSerialIF.h"
#include "tuning/clsVFO.h"

namespace quorl {

// Values of DDSInterfaceType and of setting "VFO1.IFType".
namespace InterfaceType {
inline constexpr std::int32_t Serial = 0, Parallel = 1;
}

// What belongs to a board, whether it is the one in use or only stored.
struct BoardValues {
  std::int32_t IFFrequency = 0;  // Hz
  bool HiSideLO = true, AutoUpdate = false;
  double ClkIn = 0;  // Hz
};

// What the chain stands on; all of it must outlive the chain.
struct TuningMachine {
  SerialPort& Serial;
  PrinterPort& Printer;
  EventQueue& Events;
  Dialogs& Boxes;
  SettingsStore& Settings;
};

// A serial port that vanishes is told once, without holding the panel up; when it is back, the chip is set up
// anew and gets the frequency of then.
class TuningChain {
 public:
  // Both interfaces and a VFO without a chip: nothing is read, opened or sent yet.
  TuningChain(TuningMachine machine, SettingsStore::LogSink log);

  // Takes the stored settings of both interfaces and opens the one of that type; a serial port in event mode
  // where a shaft encoder is to be read from it. False where it couldn't be opened or the type is unknown:
  // the log has the reason then, and a message has told it; `tellsPort` false leaves the message of a serial
  // port to the caller.
  bool OpenInterface(std::int32_t interfaceType, bool shaftEncoder, bool tellsPort = true);
  // Makes driver and VFO of the board `SDRModelNo` on that interface, with their stored settings, and
  // initialises the chip. Tunes nothing. What can't work goes to the log in one line, and the chain still
  // records frequencies: an AD9951 on a printer port (it gets no handler), a clock too low for the board.
  // With `tuned` (dHz) the VFO has that frequency from its first event on, whatever is stored.
  void CreateVFO(std::int32_t SDRModelNo, std::int32_t interfaceType,
                 std::optional<std::int32_t> tuned = std::nullopt);
  // Closes the port and lets the driver go; both interfaces are new ones, which know nothing of the stored
  // settings yet. The VFO records frequencies until the next CreateVFO. Not while a frame is on the wire.
  void Release();

  // The number of the board that was made last.
  std::int32_t SDRModelNo() const { return model_; }
  // The board's chip can be tuned over a printer port, too.
  static bool TakesParallel(std::int32_t SDRModelNo);
  // Those of the board in use, and those that another one would come with.
  BoardValues InUse() const;
  BoardValues Stored(std::int32_t SDRModelNo) const;
  // Nothing is on the wire, and nobody is about to send.
  bool IsIdle() const;
  // The driver sends over that interface from now on; an AD9951 over none but the serial one.
  void Connect(std::int32_t interfaceType);
  // Opens COM `portNo` over a new interface object: one that was open in event mode can't be opened again.
  // False where that failed, which has been told unless `tells` leaves that to the caller.
  bool ReopenSerial(std::int32_t portNo, bool shaftEncoder, bool tells = true);
  // Why nothing arrives at the printer port, for a person.
  Failure PrinterFault() const { return machine_.Printer.Check(parallel_->PortAddress); }
  // Half of the clock doesn't lie above the IF: the board can't be tuned.
  Failure ClockFault() const;

  // VFO, driver and interfaces write their settings to the store, in this order.
  void Save() const;
  // What keeps the board that was made last from being tuned: its clock is too low for its IF.
  const Failure& Fault() const { return fault_; }

  // The way to the tuned frequency. Another one after each CreateVFO.
  Tuner& Tune() { return *tuner_; }
  clsDDSSerialIF& SerialIF() { return *serial_; }
  clsDDSParallelIF& ParallelIF() { return *parallel_; }
  // Another one after each CreateVFO.
  const std::shared_ptr<clsVFO>& VFO() const { return vfo_; }
  // Empty before CreateVFO.
  const std::shared_ptr<Oscillator>& Driver() const { return driver_; }

 private:
  std::shared_ptr<Oscillator> CreateAD9951(std::int32_t interfaceType);
  std::shared_ptr<Oscillator> CreateAD9835();
  void MakeInterfaces();
  bool OpenSerial(bool shaftEncoder, bool tells);
  bool CheckParallel();
  void FollowPort(const Failure& vanished);
  void Tell(const std::string& text, MessageIcon icon);
  void Log(const std::string& line) const;

  TuningMachine machine_;
  SettingsStore::LogSink log_;
  std::shared_ptr<clsDDSSerialIF> serial_;
  std::shared_ptr<clsDDSParallelIF> parallel_;
  std::shared_ptr<Oscillator> driver_;
  std::function<void(std::int32_t interfaceType)> connect_;  // gives the driver its lines
  std::shared_ptr<clsVFO> vfo_;
  std::unique_ptr<Tuner> tuner_;
  Failure fault_;
  std::int32_t model_ = 0;
};

}  // namespace quorl
