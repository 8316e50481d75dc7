// The system's sockets, TCP over IPv4 and IPv6, on any event queue that watches files.
#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "platform/EventQueue.h"
#include "platform/Sockets.h"
#include "platform/linux/system/FileHandle.h"

namespace quorl {

// All sockets hang on one file of the system that can be read while any of them is ready: the queue watches
// that one, and none as long as nobody listens.
class LinuxSockets : public Sockets {
 public:
  explicit LinuxSockets(EventQueue& queue) : queue_(queue) {}
  ~LinuxSockets() override;

  std::unique_ptr<Listener> Listen(const SocketPlace& place, Failure& failure) override;

 private:
  class Watched;
  class LinuxListener;
  class LinuxConnection;

  Failure Begin();
  void Deliver();

  EventQueue& queue_;
  FileHandle set_;  // the system's, of what is watched
  std::unique_ptr<FileWatch> watch_;
  std::map<std::uint64_t, Watched*> watched_;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace quorl
