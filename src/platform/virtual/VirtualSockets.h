// A network made of memory.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "platform/EventQueue.h"
#include "platform/Sockets.h"

namespace quorl {

// A connection between the program and a peer that a test plays.
struct VirtualLine;

// The other side of a connection. What it does arrives at once; the program is told from its queue.
class VirtualPeer {
 public:
  explicit VirtualPeer(std::shared_ptr<VirtualLine> line) : line_(std::move(line)) {}

  void Send(std::string_view bytes);
  void EndWriting();
  void Break();
  // All that has come since the last call. Nothing more comes than there is room for.
  std::string Take();
  void SetRoom(std::size_t bytes);
  // The program writes no more.
  bool IsEnded() const;
  bool IsClosed() const;
  // Bytes that were sent and that the program hasn't read.
  std::size_t Unread() const;

 private:
  std::shared_ptr<VirtualLine> line_;
};

class VirtualSockets : public Sockets {
 public:
  explicit VirtualSockets(EventQueue& queue) : queue_(queue) {}

  std::set<std::string> Addresses{"127.0.0.1", "0.0.0.0", "::1"};  // of this machine
  std::set<std::uint16_t> TakenPorts;                              // by others

  std::unique_ptr<Listener> Listen(const SocketPlace& place, Failure& failure) override;
  bool Listens(std::uint16_t port) const { return waiting_.contains(port); }
  // Somebody connects to a port that is listened at.
  VirtualPeer Connect(std::uint16_t port);

 private:
  class VirtualListener;
  class VirtualConnection;
  struct Waiting {
    std::deque<std::shared_ptr<VirtualLine>> Lines;
    std::function<void()> Handler;
  };

  static void Tell(EventQueue& queue, const std::weak_ptr<Waiting>& waiting);

  EventQueue& queue_;
  std::map<std::uint16_t, std::shared_ptr<Waiting>> waiting_;
};

}  // namespace quorl
