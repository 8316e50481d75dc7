#include "platform/linux/lines/SerialCalls.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace quorl {
namespace {

int InterruptSignal() {
  return SIGRTMIN + 5;
}

int Result(int result) {
  return result < 0 ? -errno : result;
}

}  // namespace

LinuxSerialCalls::LinuxSerialCalls() {
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigemptyset(&action.sa_mask);
  // Without SA_RESTART the interrupted call returns to its caller.
  sigaction(InterruptSignal(), &action, nullptr);
}

int LinuxSerialCalls::Open(const std::string& device) {
  return Result(open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
}

void LinuxSerialCalls::Close(int file) {
  close(file);
}

int LinuxSerialCalls::TakeExclusive(int file) {
  // TIOCEXCL keeps later openers out and says nothing of those who came before; they show by their lock.
  if (flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return -EBUSY;
  return Result(ioctl(file, TIOCEXCL));
}

int LinuxSerialCalls::SetModemBits(int file, int bits, bool on) {
  return Result(ioctl(file, on ? TIOCMBIS : TIOCMBIC, &bits));
}

int LinuxSerialCalls::SetBreak(int file, bool on) {
  return Result(ioctl(file, on ? TIOCSBRK : TIOCCBRK));
}

int LinuxSerialCalls::ModemBits(int file, int& bits) {
  return Result(ioctl(file, TIOCMGET, &bits));
}

int LinuxSerialCalls::WaitForChange(int file, int bits) {
  return Result(ioctl(file, TIOCMIWAIT, bits));
}

void LinuxSerialCalls::Interrupt(pthread_t thread) {
  pthread_kill(thread, InterruptSignal());
}

}  // namespace quorl
