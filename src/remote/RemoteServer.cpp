#include "remote/RemoteServer.h"

#include <algorithm>
#include <array>

#include "remote/RigctlSession.h"
#include "support/ScopedFlag.h"

namespace quorl {
namespace {

constexpr std::size_t kMostUnread = 4096;         // bytes kept of what a client has sent
constexpr std::size_t kMostLeaving = 64;          // clients; who leaves beyond is let go without a wait
constexpr int kMostAdmissions = 16;               // before other work has its turn
constexpr int kMostLines = 16;                    // of a client, before the next one's
constexpr std::int64_t kLongestTurn = 4000;       // us: a tenth of a block
constexpr std::int64_t kLeavingTime = 2'000'000;  // us
constexpr std::chrono::milliseconds kSweepInterval(500);
constexpr const char* kFullLine =
    "64 programs are connected, which is the most: end one of them and try again\n";

}  // namespace

struct RemoteServer::Client {
  Client(std::unique_ptr<Connection> line, RemoteRadio& radio) : Line(std::move(line)), Session(radio) {}

  std::unique_ptr<Connection> Line;
  RigctlSession Session;
  std::string Unread, Answers;  // not yet taken by the session; not yet taken by the network
  bool Waits = false;           // the session takes no more of it before something else has happened
  bool Refused = false;
  bool OtherEnded = false;  // the other side sends no more
  bool Leaves = false;      // it has been sent all that was for it, and is read until it ends
  bool Broken = false;
  std::int64_t LeavesSince = 0;

  // One of kMostClients, also while answers wait that are left unread after `q`.
  bool HasPlace() const { return !Refused && !Leaves; }
  bool Talks() const { return HasPlace() && !Session.Ended(); }
  bool HasWork() const { return Talks() && !Broken && !Waits && !Unread.empty(); }
  bool IsDone() const {
    return Answers.empty() && (Refused || Session.Ended() || (OtherEnded && !HasWork()));
  }
  bool WantsMore() const { return Leaves || (Talks() && !OtherEnded && Unread.size() < kMostUnread); }
};

RemoteServer::RemoteServer(Sockets& sockets, EventQueue& queue, const Clock& clock, RemoteRadio& radio)
    : sockets_(sockets), queue_(queue), clock_(clock), radio_(radio) {}

RemoteServer::~RemoteServer() = default;

Failure RemoteServer::Listen(const SocketPlace& place) {
  if (listener_ && place == wanted_) return {};
  Stop();
  wanted_ = place;
  listener_ = sockets_.Listen(place, failure_);
  if (!listener_) return failure_;
  if (!turn_) turn_ = queue_.CreateSignal([this] { Turn(); });
  if (!sweep_) sweep_ = queue_.CreateTimer([this] { Sweep(); });
  listener_->OnWaiting([this] { TakeIn(); });
  return {};
}

Failure RemoteServer::Follow(const RemoteOptions& options) {
  const Failure misfit = options.On ? options.Misfit() : Failure{};
  if (options.On && !misfit) return Listen(options.Place());
  Stop();
  return failure_ = misfit;
}

void RemoteServer::Stop() {
  failure_ = {};
  listener_.reset();
  stopped_ = serving_;
  if (!serving_) clients_.clear();
}

std::size_t RemoteServer::Clients() const {
  return static_cast<std::size_t>(
      std::count_if(clients_.begin(), clients_.end(), [](const auto& client) { return client->HasPlace(); }));
}

std::string RemoteServer::StateText() const {
  if (failure_) return failure_->Text;
  if (!listener_) return "Off";
  const std::size_t clients = Clients();
  const std::string count = clients == 0 ? "no" : std::to_string(clients);
  return "Listening at " + PlaceText(Place()) + ", " + count + (clients == 1 ? " client" : " clients");
}

// Told again where a command is in work: what this one comes from lies above it.
void RemoteServer::TakeIn() {
  if (serving_) return;
  for (int i = 0; i < kMostAdmissions && listener_; ++i) {
    std::unique_ptr<Connection> line = listener_->Accept();
    if (!line) return;
    Admit(std::move(line));
  }
}

void RemoteServer::Admit(std::unique_ptr<Connection> line) {
  const std::size_t clients = Clients();
  Client& client = *clients_.emplace_back(std::make_unique<Client>(std::move(line), radio_));
  client.Line->OnReady([this, &client] { OnReady(client); });
  client.Refused = clients >= kMostClients;
  if (client.Refused) {
    client.Answers = kFullLine;
    Write(client);
  }
  Settle(client);
}

void RemoteServer::OnReady(Client& client) {
  if (serving_) return;
  Write(client);
  Read(client);
  if (client.HasWork()) turn_->Raise();
  Settle(client);
}

void RemoteServer::Read(Client& client) {
  if (client.Broken || !client.WantsMore()) return;
  std::array<char, kMostUnread> bytes;
  const std::size_t room = client.Leaves ? bytes.size() : kMostUnread - client.Unread.size();
  const Moved moved = client.Line->Read(bytes.data(), room);
  client.OtherEnded = client.OtherEnded || moved.State == StreamState::Ended;
  client.Broken = moved.State == StreamState::Broken;
  if (client.Leaves || moved.Bytes == 0) return;
  client.Unread.append(bytes.data(), moved.Bytes);
  client.Waits = false;
}

void RemoteServer::Write(Client& client) {
  if (client.Broken || client.Answers.empty()) return;
  const Moved moved = client.Line->Write(client.Answers);
  client.Broken = moved.State == StreamState::Broken;
  client.Answers.erase(0, moved.Bytes);
  if (moved.Bytes > 0) client.Waits = false;
}

// What the client is waited for, or the end of it. A connection that is closed while there is something to
// read takes the last answers with it on some systems: it is read until the other side has closed, too.
void RemoteServer::Settle(Client& client) {
  if (!client.Leaves && !client.Broken && client.IsDone()) {
    client.Leaves = true;
    client.LeavesSince = clock_.Microseconds();
    client.Unread.clear();
    client.Line->EndWriting();
    sweep_->Start(kSweepInterval);
  }
  const bool crowd = clients_.size() > Clients() + kMostLeaving;
  if (client.Broken || (crowd && !client.HasPlace()) || (client.Leaves && client.OtherEnded)) {
    std::erase_if(clients_, [&client](const auto& one) { return one.get() == &client; });
  } else {
    client.Line->Await(client.WantsMore(), !client.Answers.empty());
  }
}

void RemoteServer::Turn() {
  if (serving_) return;
  {
    const ScopedFlag serving(serving_);
    ServeAll();
  }
  if (stopped_) {
    stopped_ = false;
    clients_.clear();
  }
  const bool more = std::any_of(clients_.begin(), clients_.end(), [](const auto& c) { return c->HasWork(); });
  if (more) turn_->Raise();
}

void RemoteServer::ServeAll() {
  const std::int64_t end = clock_.Microseconds() + kLongestTurn;
  for (std::size_t left = clients_.size(); left > 0 && !stopped_; --left) {
    Client& client = *clients_.front();
    clients_.splice(clients_.end(), clients_, clients_.begin());
    if (!client.HasWork()) continue;
    Serve(client, end);
    if (clock_.Microseconds() >= end) return;
  }
}

// Line by line: one may cost a frame on the wire.
void RemoteServer::Serve(Client& client, std::int64_t end) {
  for (int lines = 0; lines < kMostLines && client.HasWork(); ++lines) {
    const std::string_view unread = client.Unread;
    const std::size_t feed = unread.find('\n');
    const std::size_t line = feed == std::string_view::npos ? unread.size() : feed + 1;
    const std::size_t taken = client.Session.Take(unread.substr(0, line), client.Answers);
    client.Unread.erase(0, taken);
    client.Waits = taken == 0;
    if (stopped_ || clock_.Microseconds() >= end) break;
  }
  Write(client);
  Settle(client);
}

void RemoteServer::Sweep() {
  if (serving_) return;
  const std::int64_t longAgo = clock_.Microseconds() - kLeavingTime;
  std::erase_if(clients_, [longAgo](const auto& one) { return one->Leaves && one->LeavesSince <= longAgo; });
  if (std::none_of(clients_.begin(), clients_.end(), [](const auto& one) { return one->Leaves; }))
    sweep_->Stop();
}

}  // namespace quorl
