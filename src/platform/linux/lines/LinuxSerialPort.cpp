#include "platform/linux/lines/LinuxSerialPort.h"

#include <sys/ioctl.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/linux/lines/SerialPortList.h"
#include "platform/linux/system/SystemError.h"

namespace quorl {
namespace {

constexpr int kWatched = TIOCM_CTS | TIOCM_DSR;
constexpr std::chrono::milliseconds kPoll{5};
// Some drivers end a wait with nothing changed, at once and for ever.
constexpr std::chrono::milliseconds kFruitlessWait{1};
constexpr std::chrono::milliseconds kInterruptAgain{2};
constexpr std::chrono::milliseconds kLookAgain{1000};

struct LineBit {
  int Modem;
  std::uint32_t Status;
};

constexpr LineBit kStatusBits[] = {{TIOCM_CTS, ModemStatus::Cts},
                                   {TIOCM_DSR, ModemStatus::Dsr},
                                   {TIOCM_RI, ModemStatus::Ring},
                                   {TIOCM_CD, ModemStatus::Carrier}};

Error OpenError(const std::string& device, int number) {
  const std::string what = "open the serial port " + device;
  switch (number) {
    case EACCES:
      return SystemError(what, number, "Add your user to the group dialout and log in again.");
    case EBUSY:
      return SystemError(what, number, "Close the other program that uses it.");
    case ENOENT:
    case ENXIO:
    case ENODEV:
      return SystemError(what, number, "Plug the adapter in, or choose another port.");
    default:
      return SystemError(what, number, "Choose another port.");
  }
}

}  // namespace

// Raises a signal at each change of the input lines, on a thread of its own that ends with the object.
class LinuxSerialPort::Watcher {
 public:
  Watcher(SerialCalls& calls, int file, int bits, QueueSignal& changed)
      : calls_(calls), file_(file), last_(bits & kWatched), changed_(changed), thread_([this] { Run(); }) {}

  ~Watcher() {
    std::unique_lock lock(mutex_);
    stop_ = true;
    wake_.notify_all();
    // The thread may be on its way into the wait, where the first interruption would be lost.
    while (!done_) {
      calls_.Interrupt(thread_.native_handle());
      wake_.wait_for(lock, kInterruptAgain);
    }
    lock.unlock();
    thread_.join();
  }

  // The driver doesn't tell its lines any more.
  bool IsLost() const { return lost_; }

 private:
  enum class Seen { Change, NoChange, Lost };

  void Run() {
    int waited = 1;  // the first wait follows no fruitless one
    while (!Stopped()) {
      const Seen seen = Look();
      if (seen == Seen::Lost) {
        lost_ = true;
        changed_.Raise();
        break;
      }
      if (seen == Seen::NoChange && waited <= 0) {
        Pause(waited < 0 ? kPoll : kFruitlessWait);
        Look();
      }
      waited = calls_.WaitForChange(file_, kWatched);
    }
    const std::lock_guard lock(mutex_);
    done_ = true;
    wake_.notify_all();
  }

  // Also finds what changed between two waits, which the driver wouldn't tell.
  Seen Look() {
    int bits = 0;
    if (calls_.ModemBits(file_, bits) < 0) return Seen::Lost;
    bits &= kWatched;
    if (bits == last_) return Seen::NoChange;
    last_ = bits;
    changed_.Raise();
    return Seen::Change;
  }

  bool Stopped() {
    const std::lock_guard lock(mutex_);
    return stop_;
  }

  void Pause(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex_);
    wake_.wait_for(lock, time, [this] { return stop_; });
  }

  SerialCalls& calls_;
  const int file_;
  int last_;
  QueueSignal& changed_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::atomic<bool> lost_ = false;
  bool stop_ = false;
  bool done_ = false;
  std::thread thread_;  // last: it uses all of the above
};

LinuxSerialPort::LinuxSerialPort(EventQueue& queue, SerialCalls& calls)
    : calls_(calls),
      changed_(queue.CreateSignal([this] { OnSignal(); })),
      lookAgain_(queue.CreateTimer([this] { LookAgain(); })) {}

LinuxSerialPort::~LinuxSerialPort() {
  Close();
}

Failure LinuxSerialPort::Open(const std::string& device) {
  Close();
  device_ = device;
  return Take();
}

Failure LinuxSerialPort::Take() {
  const int file = calls_.Open(device_);
  if (file < 0) return OpenError(device_, -file);
  if (const int error = calls_.TakeExclusive(file); error < 0) {
    calls_.Close(file);
    return OpenError(device_, -error);
  }
  file_ = file;
  if (Failure failure = RestLines()) {
    Leave();
    return failure;
  }
  int bits = 0;
  if (calls_.ModemBits(file, bits) >= 0) watcher_ = std::make_unique<Watcher>(calls_, file, bits, *changed_);
  return {};
}

// A pseudo terminal opens as a port does, but has no lines that a board could hear.
Failure LinuxSerialPort::RestLines() {
  int error = calls_.SetBreak(file_, false);
  if (error >= 0) error = calls_.SetModemBits(file_, TIOCM_RTS | TIOCM_DTR, true);
  if (error >= 0) return {};
  return SystemError("move the lines of " + device_, -error,
                     "Choose a serial port that has RTS, DTR and TXD.");
}

void LinuxSerialPort::Close() {
  lookAgain_->Stop();
  untold_ = false;
  Leave();
}

void LinuxSerialPort::Leave() {
  if (!IsOpen()) return;
  watcher_.reset();
  calls_.Close(file_);
  file_ = -1;
}

void LinuxSerialPort::TellLoss() {
  // A copy: the handler may set another one.
  const auto handler = onPresence_;
  if (std::exchange(untold_, false) && handler) {
    handler(Error{ENODEV, "The serial port " + device_ + " has vanished"});
  }
}

void LinuxSerialPort::OnSignal() {
  if (watcher_ && watcher_->IsLost()) Vanish();
  TellLoss();
  const auto handler = onStatusChange_;
  if (IsOpen() && handler) handler();
}

void LinuxSerialPort::OnLineCall(int result) {
  if (result == -EIO || result == -ENODEV || result == -ENXIO) Vanish();
}

// Told from the queue: who moves a line doesn't expect to be called.
void LinuxSerialPort::Vanish() {
  Leave();
  untold_ = true;
  changed_->Raise();
  lookAgain_->Start(kLookAgain);
}

void LinuxSerialPort::LookAgain() {
  // Where the program has stood still, the timer may come before the signal of the loss.
  TellLoss();
  if (IsOpen() || Take()) return;
  lookAgain_->Stop();
  const auto handler = onPresence_;
  if (handler) handler({});
}

std::vector<SerialPortInfo> LinuxSerialPort::List() const {
  return ListSerialPorts();
}

void LinuxSerialPort::SetLine(SerialLine line, bool on) {
  if (!IsOpen()) return;
  switch (line) {
    case SerialLine::Rts:
      OnLineCall(calls_.SetModemBits(file_, TIOCM_RTS, on));
      break;
    case SerialLine::Dtr:
      OnLineCall(calls_.SetModemBits(file_, TIOCM_DTR, on));
      break;
    case SerialLine::Break:
      OnLineCall(calls_.SetBreak(file_, on));
      break;
  }
}

std::optional<std::uint32_t> LinuxSerialPort::Status() const {
  int bits = 0;
  if (!IsOpen() || calls_.ModemBits(file_, bits) < 0) return {};
  std::uint32_t status = 0;
  for (const LineBit& bit : kStatusBits) {
    if ((bits & bit.Modem) != 0) status |= bit.Status;
  }
  return status;
}

void LinuxSerialPort::OnStatusChange(std::function<void()> handler) {
  onStatusChange_ = std::move(handler);
}

void LinuxSerialPort::OnPresence(std::function<void(const Failure& vanished)> handler) {
  onPresence_ = std::move(handler);
}

}  // namespace quorl
