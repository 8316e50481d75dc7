// Lets other programs steer the radio over the network: who is connected, and whose turn it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>

#include "platform/Clock.h"
#include "platform/EventQueue.h"
#include "platform/Sockets.h"
#include "remote/RemoteOptions.h"
#include "remote/RemoteRadio.h"

namespace quorl {

// Whatever clients send, a turn ends after a few milliseconds, and the blocks of sound that wait come before
// the next one. What is kept of a client is bounded: who doesn't read his answers isn't listened to further,
// and waits. A client goes when it has read what was for it, after `q`, a line that is none, or its own end.
class RemoteServer {
 public:
  static constexpr std::size_t kMostClients = 64;  // the next one is told so, and goes

  // All of it outlives the server, which opens nothing before Listen.
  RemoteServer(Sockets& sockets, EventQueue& queue, const Clock& clock, RemoteRadio& radio);
  ~RemoteServer();

  // Listens there and nowhere else; where it does so already, clients stay. Where it fails it listens
  // nowhere.
  Failure Listen(const SocketPlace& place);
  // Listens as the options say, or not at all.
  Failure Follow(const RemoteOptions& options);
  // Lets go of everybody, of who has a command in work when that is done.
  void Stop();

  bool IsListening() const { return listener_ != nullptr; }
  // Where it listens, with the port that was found.
  SocketPlace Place() const { return listener_ ? listener_->Place() : SocketPlace{}; }
  std::size_t Clients() const;
  // For a person, in one line: "Listening at 127.0.0.1:4532, 2 clients".
  std::string StateText() const;

 private:
  struct Client;

  void TakeIn();
  void Admit(std::unique_ptr<Connection> line);
  void OnReady(Client& client);
  void Read(Client& client);
  void Write(Client& client);
  void Settle(Client& client);
  void Turn();
  void ServeAll();
  void Serve(Client& client, std::int64_t end);
  void Sweep();

  Sockets& sockets_;
  EventQueue& queue_;
  const Clock& clock_;
  RemoteRadio& radio_;
  SocketPlace wanted_;
  Failure failure_;  // of the last Listen
  std::unique_ptr<Listener> listener_;
  std::list<std::unique_ptr<Client>> clients_;  // who was served last stands at the end
  bool serving_ = false;
  bool stopped_ = false;  // while a command was in work
  std::unique_ptr<QueueSignal> turn_;
  std::unique_ptr<QueueTimer> sweep_;
};

}  // namespace quorl
