// The system calls on a tty that the serial port needs, one by one, so that a test can stand in for the
// driver.
#pragma once

#include <pthread.h>

#include <string>

namespace quorl {

// Every call that can fail gives a negative error number (-EACCES, ...), else 0 or more. Modem bits are the
// TIOCM_ bits. Safe to call from two threads at once.
class SerialCalls {
 public:
  virtual ~SerialCalls() = default;
  // A file for reading and writing that never becomes the controlling terminal and doesn't wait for a
  // carrier.
  virtual int Open(const std::string& device) = 0;
  virtual void Close(int file) = 0;
  // -EBUSY where another program holds the port.
  virtual int TakeExclusive(int file) = 0;
  virtual int SetModemBits(int file, int bits, bool on) = 0;
  virtual int SetBreak(int file, bool on) = 0;
  virtual int ModemBits(int file, int& bits) = 0;
  // Returns at the next change of one of `bits`, or with -EINTR after an Interrupt. Any other failure means
  // that the driver can't wait.
  virtual int WaitForChange(int file, int bits) = 0;
  // Makes a running WaitForChange of `thread` return. One that is about to begin isn't reached.
  virtual void Interrupt(pthread_t thread) = 0;
};

class LinuxSerialCalls : public SerialCalls {
 public:
  // Takes over one real-time signal of the process, whose only work is to interrupt the wait.
  LinuxSerialCalls();
  int Open(const std::string& device) override;
  void Close(int file) override;
  int TakeExclusive(int file) override;
  int SetModemBits(int file, int bits, bool on) override;
  int SetBreak(int file, bool on) override;
  int ModemBits(int file, int& bits) override;
  int WaitForChange(int file, int bits) override;
  void Interrupt(pthread_t thread) override;
};

}  // namespace quorl
