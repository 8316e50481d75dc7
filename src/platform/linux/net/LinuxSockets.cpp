#include "platform/linux/net/LinuxSockets.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <string>

#include "platform/linux/system/SystemError.h"

namespace quorl {
namespace {

constexpr int kMostWaiting = 128;          // connections that the system keeps for us
constexpr int kSystemBuffer = 64 * 1024;   // bytes, of a connection, each way
constexpr std::chrono::seconds kPause(1);  // where the system has no more files to give
constexpr std::size_t kMostEvents = 64;    // that are told of before other work has its turn
constexpr int kSilence = 60, kAsks = 4;    // s until the other side is asked whether it is there, times
constexpr int kAskInterval = 15;           // s
constexpr unsigned kDeaf = 120 * 1000;     // ms that it may take nothing of what waits for it

void Choose(int file, int level, int option, int value) {
  setsockopt(file, level, option, &value, sizeof value);
}

// A machine that has been switched off, or taken off the network, says nothing: its connections go in time.
void SetUp(int file) {
  Choose(file, IPPROTO_TCP, TCP_NODELAY, 1);
  Choose(file, SOL_SOCKET, SO_SNDBUF, kSystemBuffer);
  Choose(file, SOL_SOCKET, SO_KEEPALIVE, 1);
  Choose(file, IPPROTO_TCP, TCP_KEEPIDLE, kSilence);
  Choose(file, IPPROTO_TCP, TCP_KEEPINTVL, kAskInterval);
  Choose(file, IPPROTO_TCP, TCP_KEEPCNT, kAsks);
  Choose(file, IPPROTO_TCP, TCP_USER_TIMEOUT, static_cast<int>(kDeaf));
}

// What has been moved, where the system says -1.
Moved NotMoved() {
  const bool waits = errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
  return {0, waits ? StreamState::Open : StreamState::Broken};
}

const char* AdviceFor(int number) {
  switch (number) {
    case EADDRINUSE:
      return "Another program listens there; choose another port, or end that program.";
    case EADDRNOTAVAIL:
    case ENODEV:
      return "This computer hasn't that address; 127.0.0.1 is always its own.";
    case EACCES:
      return "Ports below 1024 are the system's; choose a higher one, such as 4532.";
    case EAFNOSUPPORT:
      return "This computer has no network of that kind; 127.0.0.1 is always there.";
    default:
      return "Choose another address or port.";
  }
}

Error ListenError(const SocketPlace& place, int number) {
  return SystemError("listen at " + PlaceText(place), number, AdviceFor(number));
}

// A socket that listens at `found`; none with errno set.
FileHandle OpenAt(const addrinfo& found) {
  FileHandle socket(::socket(found.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP));
  if (!socket) return {};
  // The port is free as soon as the program has ended, whatever connections the system still winds up.
  Choose(socket.Get(), SOL_SOCKET, SO_REUSEADDR, 1);
  Choose(socket.Get(), SOL_SOCKET, SO_RCVBUF, kSystemBuffer);  // of its connections
  const bool listens =
      bind(socket.Get(), found.ai_addr, found.ai_addrlen) == 0 && listen(socket.Get(), kMostWaiting) == 0;
  if (listens) return socket;
  const int error = errno;
  socket.Close();
  errno = error;
  return {};
}

FileHandle OpenAt(const SocketPlace& place, Failure& failure) {
  addrinfo wanted{};
  wanted.ai_family = AF_UNSPEC;
  wanted.ai_socktype = SOCK_STREAM;
  wanted.ai_flags = AI_PASSIVE | AI_NUMERICHOST | AI_NUMERICSERV;  // asks nobody on the network
  addrinfo* found = nullptr;
  if (getaddrinfo(place.Address.c_str(), std::to_string(place.Port).c_str(), &wanted, &found) != 0) {
    failure = Error{EINVAL, "Can't listen at " + PlaceText(place) +
                                ": this is no address. Write one such as 127.0.0.1 or ::1."};
    return {};
  }
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> list(found, freeaddrinfo);
  FileHandle socket = OpenAt(*list);
  if (!socket) failure = ListenError(place, errno);
  return socket;
}

std::uint16_t PortOf(int file) {
  sockaddr_storage own{};
  socklen_t size = sizeof own;
  if (getsockname(file, reinterpret_cast<sockaddr*>(&own), &size) != 0) return 0;
  // The port lies in the same place for both kinds.
  return ntohs(reinterpret_cast<const sockaddr_in*>(&own)->sin_port);
}

}  // namespace

// A socket among those that are watched, under a number that no other one gets.
class LinuxSockets::Watched {
 public:
  Watched(LinuxSockets& home, FileHandle socket)
      : home_(home), socket_(std::move(socket)), number_(++home.lastNumber_) {
    home_.watched_.emplace(number_, this);
    Change(EPOLL_CTL_ADD, 0);
  }
  virtual ~Watched() {
    Change(EPOLL_CTL_DEL, 0);
    home_.watched_.erase(number_);
  }
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;

  const std::function<void()>& Handler() const { return handler_; }

 protected:
  int File() const { return socket_.Get(); }
  LinuxSockets& Home() { return home_; }
  void SetHandler(std::function<void()> handler) { handler_ = std::move(handler); }
  void Watch(std::uint32_t events) {
    if (events == events_) return;
    events_ = events;
    Change(EPOLL_CTL_MOD, events);
  }

 private:
  void Change(int what, std::uint32_t events) {
    epoll_event event{};
    event.events = events;
    event.data.u64 = number_;
    epoll_ctl(home_.set_.Get(), what, socket_.Get(), &event);
  }

  LinuxSockets& home_;
  FileHandle socket_;
  std::uint64_t number_;
  std::uint32_t events_ = 0;
  std::function<void()> handler_;
};

class LinuxSockets::LinuxConnection : public Connection, private Watched {
 public:
  LinuxConnection(LinuxSockets& home, FileHandle socket) : Watched(home, std::move(socket)) { SetUp(File()); }

  Moved Read(char* into, std::size_t most) override {
    const ssize_t read = recv(File(), into, most, 0);
    if (read < 0) return NotMoved();
    const bool ended = read == 0 && most > 0;
    return {static_cast<std::size_t>(read), ended ? StreamState::Ended : StreamState::Open};
  }
  Moved Write(std::string_view bytes) override {
    const ssize_t sent = send(File(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    return sent < 0 ? NotMoved() : Moved{static_cast<std::size_t>(sent), StreamState::Open};
  }
  void EndWriting() override { shutdown(File(), SHUT_WR); }
  void OnReady(std::function<void()> handler) override { SetHandler(std::move(handler)); }
  void Await(bool reading, bool writing) override {
    Watch((reading ? EPOLLIN : 0U) | (writing ? EPOLLOUT : 0U));
  }
};

class LinuxSockets::LinuxListener : public Listener, private Watched {
 public:
  LinuxListener(LinuxSockets& home, FileHandle socket, SocketPlace place)
      : Watched(home, std::move(socket)),
        place_(std::move(place)),
        resume_(home.queue_.CreateTimer([this] { Resume(); })) {
    place_.Port = PortOf(File());
  }

  SocketPlace Place() const override { return place_; }
  // Who can't be taken in for want of a file would be told of again and again: the next look is a second
  // later.
  std::unique_ptr<Connection> Accept() override {
    FileHandle socket(accept4(File(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (socket) return std::make_unique<LinuxConnection>(Home(), std::move(socket));
    if (errno != EAGAIN && errno != EWOULDBLOCK && errno != ECONNABORTED && errno != EINTR) {
      Watch(0);
      resume_->Start(kPause);
    }
    return nullptr;
  }
  void OnWaiting(std::function<void()> handler) override {
    SetHandler(std::move(handler));
    Resume();
  }

 private:
  void Resume() {
    resume_->Stop();
    Watch(EPOLLIN);
  }

  SocketPlace place_;
  std::unique_ptr<QueueTimer> resume_;
};

LinuxSockets::~LinuxSockets() = default;

Failure LinuxSockets::Begin() {
  if (set_) return {};
  set_ = FileHandle(epoll_create1(EPOLL_CLOEXEC));
  if (!set_) return SystemError("listen to other programs", errno);
  watch_ = queue_.WatchFile(set_.Get(), [this] { Deliver(); });
  return {};
}

std::unique_ptr<Listener> LinuxSockets::Listen(const SocketPlace& place, Failure& failure) {
  failure = Begin();
  if (failure) return nullptr;
  FileHandle socket = OpenAt(place, failure);
  if (!socket) return nullptr;
  return std::make_unique<LinuxListener>(*this, std::move(socket), place);
}

// A handler may close any of the connections, its own among them.
void LinuxSockets::Deliver() {
  std::array<epoll_event, kMostEvents> events{};
  const int ready = epoll_wait(set_.Get(), events.data(), static_cast<int>(events.size()), 0);
  for (int i = 0; i < ready; ++i) {
    const auto watched = watched_.find(events[static_cast<std::size_t>(i)].data.u64);
    if (watched == watched_.end()) continue;
    const std::function<void()> handler = watched->second->Handler();
    if (handler) handler();
  }
}

}  // namespace quorl
