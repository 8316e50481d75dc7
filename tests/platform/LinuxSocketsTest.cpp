// Places to listen at, and the system's own sockets.
#include "platform/linux/net/LinuxSockets.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <functional>
#include <vector>

#include "platform/linux/system/LinuxEventQueue.h"

namespace quorl {
namespace {

using std::chrono::milliseconds;

constexpr std::chrono::seconds kSocketPatience{10};  // never waited out by what works

TEST(SocketPlaceTest, PlacesAreReadAsTheyAreWritten) {
  for (const char* text :
       {"127.0.0.1:4532", "0.0.0.0:1", "[::1]:65535", "[fe80::1%eth0]:4532", "10.0.0.255:0"}) {
    const auto place = ParsePlace(text);
    ASSERT_TRUE(place) << text;
    EXPECT_EQ(PlaceText(*place), text);
  }
  EXPECT_EQ(ParsePlace("4532"), (SocketPlace{"127.0.0.1", 4532}));
  EXPECT_EQ(ParsePlace("localhost:4532"), (SocketPlace{"127.0.0.1", 4532}));
  for (const char* text :
       {"", ":", "65536", "-1", "45 32", "a:1", "1.2.3:4", "1.2.3.4.5:6", "256.0.0.1:1", "::1", "::1:4532",
        "[::1]", "[127.0.0.1]:1", "[]:1", "127.0.0.1:", "http://127.0.0.1:80"})
    EXPECT_FALSE(ParsePlace(text)) << text;
  EXPECT_EQ(ParseHost(" 192.168.1.5 "), "192.168.1.5");
  for (const char* own : {"127.0.0.1", "127.9.8.7", "::1"}) EXPECT_TRUE(IsOwnMachineOnly(own)) << own;
  for (const char* open : {"0.0.0.0", "::", "192.168.1.5", "127.0.0.1.example", "::127.0.0.1"})
    EXPECT_FALSE(IsOwnMachineOnly(open)) << open;
}

class LinuxSocketsTest : public testing::Test {
 protected:
  std::unique_ptr<Listener> Listen(const SocketPlace& place = {}) {
    Failure failure;
    auto listener = sockets_.Listen(place, failure);
    EXPECT_FALSE(failure) << failure->Text;
    return listener;
  }
  static FileHandle Connect(std::uint16_t port) {
    FileHandle file(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(port);
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(file.Get(), reinterpret_cast<sockaddr*>(&to), sizeof to), 0);
    return file;
  }
  // The connection that comes next.
  std::unique_ptr<Connection> Accept(Listener& listener) {
    std::unique_ptr<Connection> line;
    listener.OnWaiting([&] {
      if (!line) line = listener.Accept();
    });
    WaitUntil([&] { return line != nullptr; });
    return line;
  }
  void WaitUntil(const std::function<bool()>& ready) {
    const auto end = std::chrono::steady_clock::now() + kSocketPatience;
    while (!ready() && std::chrono::steady_clock::now() < end) queue_.Wait(milliseconds(50));
    EXPECT_TRUE(ready());
  }
  std::string Refusal(const SocketPlace& place) {
    Failure failure;
    EXPECT_EQ(sockets_.Listen(place, failure), nullptr);
    return failure.value_or(Error{}).Text;
  }

  LinuxEventQueue queue_;
  LinuxSockets sockets_{queue_};
};

TEST_F(LinuxSocketsTest, BytesPassBothWaysAndBothEndsAreTold) {
  auto listener = Listen();
  ASSERT_NE(listener->Place().Port, 0);
  FileHandle peer = Connect(listener->Place().Port);
  auto line = Accept(*listener);
  std::string heard;
  StreamState state = StreamState::Open;
  line->OnReady([&] {
    char bytes[3];
    const Moved moved = line->Read(bytes, sizeof bytes);
    heard.append(bytes, moved.Bytes);
    state = moved.State;
    if (state != StreamState::Open) line->Await(false, false);
  });
  line->Await(true, false);
  ASSERT_EQ(send(peer.Get(), "f\nm\nq\n", 6, 0), 6);
  WaitUntil([&] { return heard == "f\nm\nq\n"; });
  EXPECT_EQ(line->Write("answer").Bytes, 6U);
  char answer[16];
  EXPECT_EQ(recv(peer.Get(), answer, sizeof answer, 0), 6);
  shutdown(peer.Get(), SHUT_WR);
  WaitUntil([&] { return state == StreamState::Ended; });
  EXPECT_EQ(line->Write("bye").State, StreamState::Open) << "the other side still reads";
  line->EndWriting();
  EXPECT_EQ(recv(peer.Get(), answer, sizeof answer, MSG_WAITALL), 3);
}

TEST_F(LinuxSocketsTest, WhoDoesNotReadStopsTheStreamAndIsToldOfWhenHeDoes) {
  auto listener = Listen();
  FileHandle peer = Connect(listener->Place().Port);
  auto line = Accept(*listener);
  const std::string piece(65536, 'x');
  std::size_t sent = 0;
  for (Moved moved; (moved = line->Write(piece)).Bytes > 0; sent += moved.Bytes) ASSERT_LT(sent, 64U << 20U);
  int calls = 0;
  line->OnReady([&] {
    ++calls;
    line->Await(false, false);
  });
  line->Await(false, true);
  queue_.Wait(milliseconds(0));
  EXPECT_EQ(calls, 0);
  std::vector<char> rest(sent);
  EXPECT_EQ(recv(peer.Get(), rest.data(), sent, MSG_WAITALL), static_cast<ssize_t>(sent));
  WaitUntil([&] { return calls == 1; });
  // Gone without a word, with bytes unread: the next write finds out, and no signal ends the program.
  line->Write("more");
  peer.Close();
  bool broken = false;
  line->OnReady([&] {
    for (const char* bytes : {"x", "y"}) broken = line->Write(bytes).State == StreamState::Broken;
  });
  WaitUntil([&] { return broken; });
}

TEST_F(LinuxSocketsTest, AHandlerMayCloseItsOwnAndOtherConnections) {
  auto listener = Listen();
  std::vector<FileHandle> peers;
  std::vector<std::unique_ptr<Connection>> lines;
  for (int i = 0; i < 8; ++i) {
    peers.push_back(Connect(listener->Place().Port));
    lines.push_back(Accept(*listener));
  }
  int calls = 0;
  for (auto& line : lines) {
    line->OnReady([&] {
      ++calls;
      lines.clear();
    });
    line->Await(true, false);
  }
  for (const FileHandle& peer : peers) send(peer.Get(), "f\n", 2, 0);
  WaitUntil([&] { return calls > 0; });
  queue_.Wait(milliseconds(0));
  EXPECT_EQ(calls, 1) << "what has been closed is told of nothing";
}

TEST_F(LinuxSocketsTest, APlaceThatCannotBeHadIsNamedWithWhatToDo) {
  auto listener = Listen();
  const std::uint16_t port = listener->Place().Port;
  const std::string taken = Refusal(listener->Place());
  EXPECT_NE(taken.find("127.0.0.1:" + std::to_string(port)), std::string::npos) << taken;
  EXPECT_NE(taken.find("choose another port"), std::string::npos) << taken;
  EXPECT_NE(Refusal({"192.0.2.1", 4532}).find("This computer hasn't that address"), std::string::npos);
  EXPECT_NE(Refusal({"::zz", 4532}).find("no address"), std::string::npos);
  // With clients still there the port is free again as soon as it is let go.
  FileHandle peer = Connect(port);
  auto line = Accept(*listener);
  line.reset();
  listener.reset();
  EXPECT_NE(Listen({kOwnMachine, port}), nullptr);
}

TEST_F(LinuxSocketsTest, WithoutAFileToGiveItGoesOnLaterAndSpinsNot) {
  auto listener = Listen();
  // The sanitizer needs files, too, when it sees a class for the first time.
  const FileHandle first = Connect(listener->Place().Port);
  EXPECT_NE(Accept(*listener), nullptr);
  queue_.CreateTimer([] {})->Start(milliseconds(1));
  int calls = 0;
  std::unique_ptr<Connection> line;
  listener->OnWaiting([&] {
    ++calls;
    line = listener->Accept();
  });
  FileHandle peer = Connect(listener->Place().Port);
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlimit none{1, limit.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  WaitUntil([&] { return calls > 0; });
  for (int i = 0; i < 20; ++i) queue_.Wait(milliseconds(2));
  setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_EQ(line, nullptr);
  EXPECT_EQ(calls, 1);
  WaitUntil([&] { return line != nullptr; });
}

}  // namespace
}  // namespace quorl
