// Preloaded into a program, gives a pseudo terminal the control lines of a serial port: its far end can be
// closed, as an adapter is pulled out, on a machine that has no adapter. Everything else goes to the kernel.
#include <errno.h>
#include <stdarg.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" int ioctl(int file, unsigned long request, ...) noexcept {
  va_list rest;
  va_start(rest, request);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  const long result = syscall(SYS_ioctl, file, request, argument);
  // A terminal without lines says ENOTTY; one whose far end has gone says EIO.
  if (result >= 0 || errno != ENOTTY) return static_cast<int>(result);
  const bool asks = request == TIOCMGET, moves = request == TIOCMBIS || request == TIOCMBIC;
  if ((!asks && !moves) || isatty(file) == 0) return -1;
  if (asks) *static_cast<int*>(argument) = TIOCM_CTS | TIOCM_DSR;
  return 0;
}
