#include "platform/virtual/VirtualSockets.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace quorl {
namespace {

constexpr std::size_t kRoom = 65536;
constexpr std::uint16_t kFirstFreePort = 40000;

}  // namespace

struct VirtualLine : std::enable_shared_from_this<VirtualLine> {
  explicit VirtualLine(EventQueue& queue) : Queue(queue) {}

  EventQueue& Queue;
  std::string ToProgram, ToPeer;
  std::size_t Room = kRoom;
  bool PeerEnds = false, Broken = false, ProgramEnds = false, Closed = false;
  bool Reads = false, Writes = false, Told = false;
  std::function<void()> Handler;

  bool IsReady() const {
    const bool readable = Reads && (!ToProgram.empty() || PeerEnds);
    return !Closed && Handler && (readable || (Writes && ToPeer.size() < Room) || Broken);
  }
  // Told again as long as it is ready, as the system would.
  void Tell() {
    if (Told || !IsReady()) return;
    Told = true;
    Queue.Post([line = weak_from_this()] {
      if (const auto alive = line.lock()) alive->Deliver();
    });
  }
  void Deliver() {
    Told = false;
    if (!IsReady()) return;
    const std::function<void()> handler = Handler;
    handler();
    Tell();
  }
};

void VirtualPeer::Send(std::string_view bytes) {
  line_->ToProgram += bytes;
  line_->Tell();
}

void VirtualPeer::EndWriting() {
  line_->PeerEnds = true;
  line_->Tell();
}

void VirtualPeer::Break() {
  line_->Broken = true;
  line_->Tell();
}

std::string VirtualPeer::Take() {
  std::string taken = std::exchange(line_->ToPeer, {});
  line_->Tell();
  return taken;
}

void VirtualPeer::SetRoom(std::size_t bytes) {
  line_->Room = bytes;
  line_->Tell();
}

bool VirtualPeer::IsEnded() const {
  return line_->ProgramEnds || line_->Closed;
}

bool VirtualPeer::IsClosed() const {
  return line_->Closed;
}

std::size_t VirtualPeer::Unread() const {
  return line_->ToProgram.size();
}

class VirtualSockets::VirtualConnection : public Connection {
 public:
  explicit VirtualConnection(std::shared_ptr<VirtualLine> line) : line_(std::move(line)) {}
  ~VirtualConnection() override { line_->Closed = true; }

  Moved Read(char* into, std::size_t most) override {
    if (line_->Broken) return {0, StreamState::Broken};
    const std::size_t bytes = std::min(most, line_->ToProgram.size());
    std::copy_n(line_->ToProgram.begin(), bytes, into);
    line_->ToProgram.erase(0, bytes);
    const bool ended = bytes == 0 && line_->PeerEnds;
    return {bytes, ended ? StreamState::Ended : StreamState::Open};
  }
  Moved Write(std::string_view bytes) override {
    if (line_->Broken) return {0, StreamState::Broken};
    const std::size_t room = line_->Room - std::min(line_->Room, line_->ToPeer.size());
    const std::size_t taken = std::min(room, bytes.size());
    line_->ToPeer += bytes.substr(0, taken);
    return {taken, StreamState::Open};
  }
  void EndWriting() override { line_->ProgramEnds = true; }
  void OnReady(std::function<void()> handler) override {
    line_->Handler = std::move(handler);
    line_->Tell();
  }
  void Await(bool reading, bool writing) override {
    line_->Reads = reading;
    line_->Writes = writing;
    line_->Tell();
  }

 private:
  std::shared_ptr<VirtualLine> line_;
};

class VirtualSockets::VirtualListener : public Listener {
 public:
  VirtualListener(VirtualSockets& home, SocketPlace place)
      : home_(home), place_(std::move(place)), waiting_(std::make_shared<Waiting>()) {
    home_.waiting_.emplace(place_.Port, waiting_);
  }
  ~VirtualListener() override { home_.waiting_.erase(place_.Port); }

  SocketPlace Place() const override { return place_; }
  std::unique_ptr<Connection> Accept() override {
    if (waiting_->Lines.empty()) return nullptr;
    auto line = std::move(waiting_->Lines.front());
    waiting_->Lines.pop_front();
    return std::make_unique<VirtualConnection>(std::move(line));
  }
  void OnWaiting(std::function<void()> handler) override { waiting_->Handler = std::move(handler); }

 private:
  VirtualSockets& home_;
  SocketPlace place_;
  std::shared_ptr<Waiting> waiting_;
};

std::unique_ptr<Listener> VirtualSockets::Listen(const SocketPlace& place, Failure& failure) {
  failure = {};
  SocketPlace found = place;
  if (found.Port == 0) found.Port = kFirstFreePort;
  while (place.Port == 0 && waiting_.contains(found.Port)) ++found.Port;
  if (!Addresses.contains(found.Address)) {
    failure = Error{99, "Can't listen at " + PlaceText(place) + ": this computer hasn't that address."};
  } else if (TakenPorts.contains(found.Port) || waiting_.contains(found.Port)) {
    failure = Error{98, "Can't listen at " + PlaceText(place) + ": another program listens there."};
  }
  return failure ? nullptr : std::make_unique<VirtualListener>(*this, found);
}

VirtualPeer VirtualSockets::Connect(std::uint16_t port) {
  const auto found = waiting_.find(port);
  if (found == waiting_.end()) throw std::out_of_range("nobody listens at port " + std::to_string(port));
  auto line = std::make_shared<VirtualLine>(queue_);
  found->second->Lines.push_back(line);
  Tell(queue_, found->second);
  return VirtualPeer(std::move(line));
}

// Again as long as somebody waits, as the system would.
void VirtualSockets::Tell(EventQueue& queue, const std::weak_ptr<Waiting>& waiting) {
  queue.Post([&queue, waiting] {
    const auto listener = waiting.lock();
    if (!listener || listener->Lines.empty() || !listener->Handler) return;
    listener->Handler();
    Tell(queue, waiting);
  });
}

}  // namespace quorl
