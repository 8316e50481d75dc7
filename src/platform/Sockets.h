// Connections that other programs open to this one: streams of bytes both ways, without waiting.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>

#include "platform/SocketPlace.h"
#include "support/Error.h"

namespace quorl {

enum class StreamState {
  Open,
  Ended,  // the other side sends no more, and may go on reading
  Broken  // nothing passes any more, either way
};

// Of one call. An open stream that moved nothing would have had to wait.
struct Moved {
  std::size_t Bytes = 0;
  StreamState State = StreamState::Open;
};

// Destroyed, it is closed at once.
class Connection {
 public:
  virtual ~Connection() = default;
  virtual Moved Read(char* into, std::size_t most) = 0;
  virtual Moved Write(std::string_view bytes) = 0;
  // No more is to be written: the other side finds the end behind what was.
  virtual void EndWriting() = 0;
  // `handler` runs on the event queue's thread while what is awaited can be done, and wherever the stream is
  // broken. It may destroy the connection.
  virtual void OnReady(std::function<void()> handler) = 0;
  // Nothing is, at first.
  virtual void Await(bool reading, bool writing) = 0;
};

// Destroyed, nobody can connect any more; connections stay.
class Listener {
 public:
  virtual ~Listener() = default;
  // With the port that was found, where any was asked for.
  virtual SocketPlace Place() const = 0;
  // The next who has connected; null where nobody waits.
  virtual std::unique_ptr<Connection> Accept() = 0;
  // `handler` runs on the event queue's thread while somebody waits.
  virtual void OnWaiting(std::function<void()> handler) = 0;
};

// Outlives its listeners and connections.
class Sockets {
 public:
  virtual ~Sockets() = default;
  // Null with `failure` set where the place is taken or isn't this machine's.
  virtual std::unique_ptr<Listener> Listen(const SocketPlace& place, Failure& failure) = 0;
};

}  // namespace quorl
