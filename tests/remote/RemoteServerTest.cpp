// Who is served, in which order and up to where, over a network of memory.
#include "remote/RemoteServer.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualSockets.h"
#include "remote/RememberedRadio.h"

namespace quorl::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr std::uint16_t kPort = 4532;
const SocketPlace kHome{kOwnMachine, kPort};

std::string Times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

class RemoteServerTest : public testing::Test {
 protected:
  RemoteServerTest() {
    Radio.Hertz = 0;
    EXPECT_FALSE(Server.Listen(kHome));
  }
  VirtualPeer Connect() {
    VirtualPeer peer = Network.Connect(kPort);
    Run(milliseconds(1));
    return peer;
  }
  void Run(milliseconds time) { Queue.AdvanceBy(time); }
  std::string Ask(VirtualPeer& peer, const std::string& line) {
    peer.Send(line + "\n");
    Run(milliseconds(1));
    return peer.Take();
  }

  VirtualClock Clock;
  VirtualEventQueue Queue{Clock};
  VirtualSockets Network{Queue};
  RememberedRadio Radio;
  RemoteServer Server{Network, Queue, Clock, Radio};
};

TEST_F(RemoteServerTest, ClientsAskAndSetAndGoByThemselves) {
  VirtualPeer one = Connect(), other = Connect();
  EXPECT_EQ(Server.StateText(), "Listening at 127.0.0.1:4532, 2 clients");
  EXPECT_EQ(Ask(one, "F 7050000"), "RPRT 0\n");
  EXPECT_EQ(Ask(other, "f"), "7050000\n");
  EXPECT_EQ(Ask(one, "q"), "RPRT 0\n");
  EXPECT_TRUE(one.IsEnded());
  EXPECT_FALSE(one.IsClosed()) << "what it still sends would take the answer with it";
  EXPECT_EQ(Server.Clients(), 1U);
  one.EndWriting();
  other.Break();
  Run(milliseconds(1));
  EXPECT_TRUE(one.IsClosed());
  EXPECT_TRUE(other.IsClosed());
  EXPECT_EQ(Server.StateText(), "Listening at 127.0.0.1:4532, no clients");
  EXPECT_TRUE(Queue.IsIdle() || (Run(seconds(1)), Queue.IsIdle())) << "nobody is there, nothing ticks";
}

TEST_F(RemoteServerTest, WhoSendsAllAtOnceAndEndsIsAnsweredInFull) {
  VirtualPeer peer = Connect();
  peer.Send(Times(500, "f\n") + "F 70");
  peer.EndWriting();
  Run(milliseconds(1));
  EXPECT_EQ(peer.Take(), Times(500, "0\n"));
  EXPECT_TRUE(peer.IsClosed());
  EXPECT_EQ(Radio.Hertz, 0.0) << "half a line is none";
}

TEST_F(RemoteServerTest, TenThousandCommandsLeaveRoomForOthersAndForTheSound) {
  VirtualPeer busy = Connect(), other = Connect();
  busy.SetRoom(1 << 20);
  int tunings = 0;
  Radio.DuringFrame = [&] {
    ++tunings;
    Clock.Advance(milliseconds(3));
  };
  int ticks = 0;
  const auto sound = Queue.CreateTimer([&] { ++ticks; });
  sound->Start(milliseconds(10));
  busy.Send(Times(10000, "F 7000000\n"));
  // Turn by turn: the work never waits for the clock.
  const auto turnsUntil = [&](const std::function<bool()>& done) {
    for (int turns = 0; turns < 20000 && !done(); ++turns) Queue.Yield();
    EXPECT_TRUE(done());
  };
  turnsUntil([&] { return tunings >= 100; });
  other.Send("f\n");
  std::string answer;
  turnsUntil([&] { return !(answer += other.Take()).empty(); });
  EXPECT_EQ(answer, "7000000\n");
  EXPECT_LT(tunings, 106);
  turnsUntil([&] { return tunings == 10000; });
  EXPECT_GT(ticks, 30000 / 10 * 9 / 10) << "the sound is not kept waiting";
  EXPECT_TRUE(busy.Take() == Times(10000, "RPRT 0\n"));
}

TEST_F(RemoteServerTest, WhoNeverReadsIsHeardNoFurtherAndGoesOnWhereItStood) {
  VirtualPeer deaf = Connect(), other = Connect();
  Radio.Hertz = 100e6;
  deaf.SetRoom(0);
  const std::string all = Times(100000, "f\n");
  deaf.Send(all);
  Run(seconds(1));
  const std::size_t read = all.size() - deaf.Unread();
  EXPECT_GT(read, 4096U);
  EXPECT_LT(read, 32768U) << "what waits for it is bounded, and so is what it may send";
  EXPECT_EQ(Ask(other, "f"), "100000000\n");
  deaf.SetRoom(1000);
  std::string heard;
  for (int i = 0; i < 10000 && heard.size() < 1000000; ++i) {
    heard += deaf.Take();
    Run(milliseconds(1));
  }
  EXPECT_TRUE(heard == Times(100000, "100000000\n")) << heard.size();
}

TEST_F(RemoteServerTest, ALineThatNeverEndsAndZeroesEndTheirOwnClientOnly) {
  VirtualPeer endless = Connect(), zeroes = Connect(), other = Connect();
  endless.Send(std::string(1 << 20, 'x'));
  zeroes.Send(std::string(1 << 20, '\0'));
  Run(milliseconds(10));
  for (VirtualPeer* peer : {&endless, &zeroes}) {
    EXPECT_EQ(peer->Take(), "RPRT -1\n");
    EXPECT_TRUE(peer->IsEnded());
    EXPECT_EQ(peer->Unread(), 0U) << "taken, so that the answer gets through";
  }
  EXPECT_EQ(Server.Clients(), 1U);
  Run(seconds(3));
  EXPECT_TRUE(endless.IsClosed()) << "that doesn't go by itself";
  EXPECT_EQ(Ask(other, "f"), "0\n");
}

TEST_F(RemoteServerTest, TheSixtyFifthIsToldSoAndMakesRoomForNobody) {
  std::vector<VirtualPeer> peers;
  for (int i = 0; i < 200; ++i) peers.push_back(Connect());
  EXPECT_EQ(Server.Clients(), 64U);
  for (std::size_t i = 64; i < peers.size(); ++i) {
    const std::string line = peers[i].Take();
    EXPECT_EQ(line.find("64 programs are connected"), 0U) << i;
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EXPECT_TRUE(peers[i].IsEnded());
  }
  EXPECT_FALSE(peers[64].IsClosed());
  EXPECT_TRUE(peers[199].IsClosed()) << "a crowd isn't waited for";
  EXPECT_EQ(Ask(peers[63], "f"), "0\n");
  peers[0].Break();
  Run(seconds(3));
  VirtualPeer late = Connect();
  EXPECT_EQ(Ask(late, "f"), "0\n");
}

TEST_F(RemoteServerTest, WhoSaysGoodbyeKeepsItsPlaceUntilTheAnswersAreRead) {
  std::vector<VirtualPeer> peers;
  for (int i = 0; i < 64; ++i) {
    peers.push_back(Connect());
    peers.back().SetRoom(0);
    peers.back().Send("f\nq\n");
  }
  Run(milliseconds(1));
  VirtualPeer late = Connect();
  EXPECT_EQ(late.Take().find("64 programs are connected"), 0U);
  for (VirtualPeer& peer : peers) peer.SetRoom(1000);
  Run(milliseconds(1));
  for (VirtualPeer& peer : peers) EXPECT_EQ(peer.Take(), "0\nRPRT 0\n");
  EXPECT_EQ(Server.Clients(), 0U);
  EXPECT_FALSE(peers[0].IsClosed());
  VirtualPeer next = Connect();
  EXPECT_EQ(Ask(next, "q"), "RPRT 0\n");
  EXPECT_TRUE(next.IsClosed()) << "a crowd isn't waited for";
}

TEST_F(RemoteServerTest, ItIsStoppedAndMovedWhileACommandIsInWork) {
  VirtualPeer peer = Connect(), other = Connect();
  Radio.DuringFrame = [&] {
    Queue.Yield();
    Server.Stop();
  };
  EXPECT_EQ(Ask(peer, "F 1\nF 2\nF 3"), "RPRT 0\n") << "this command is carried out, and no other";
  EXPECT_TRUE(peer.IsClosed());
  EXPECT_TRUE(other.IsClosed());
  EXPECT_EQ(Server.StateText(), "Off");
  EXPECT_FALSE(Network.Listens(kPort));
  ASSERT_FALSE(Server.Listen(kHome));
  VirtualPeer third = Connect();
  Radio.DuringFrame = [&] { EXPECT_FALSE(Server.Listen({kOwnMachine, 5000})); };
  third.Send("F 4\n");
  Run(milliseconds(1));
  EXPECT_TRUE(third.IsClosed());
  EXPECT_FALSE(Network.Listens(kPort));
  EXPECT_TRUE(Network.Listens(5000));
  VirtualPeer fourth = Network.Connect(5000);
  Run(milliseconds(1));
  EXPECT_EQ(Ask(fourth, "f"), "4\n");
}

TEST_F(RemoteServerTest, TheOptionsDecideWhetherAndWhere) {
  VirtualPeer peer = Connect();
  RemoteOptions options{.On = true};
  EXPECT_FALSE(Server.Follow(options));
  EXPECT_EQ(Ask(peer, "f"), "0\n") << "the same place: clients stay";
  options.Address = "localhost";
  EXPECT_FALSE(Server.Follow(options));
  EXPECT_EQ(Server.Clients(), 1U);

  options.Address = "0.0.0.0";
  const Failure open = Server.Follow(options);
  ASSERT_TRUE(open) << "other computers need a leave of their own";
  EXPECT_NE(open->Text.find("0.0.0.0"), std::string::npos);
  EXPECT_EQ(Server.StateText(), open->Text);
  EXPECT_FALSE(Network.Listens(kPort));
  EXPECT_TRUE(peer.IsClosed());
  options.OtherComputers = true;
  EXPECT_FALSE(Server.Follow(options));
  EXPECT_TRUE(Network.Listens(kPort));

  Network.TakenPorts = {5000};
  options.Port = 5000;
  EXPECT_TRUE(Server.Follow(options));
  EXPECT_FALSE(Server.IsListening());
  Network.TakenPorts.clear();
  EXPECT_FALSE(Server.Follow(options)) << "tried again";
  EXPECT_TRUE(Network.Listens(5000));
  for (const std::int32_t port : {0, -1, 65536}) {
    options.Port = port;
    EXPECT_TRUE(Server.Follow(options)) << port;
  }
  options.On = false;
  EXPECT_FALSE(Server.Follow(options));
  EXPECT_EQ(Server.StateText(), "Off");
}

}  // namespace
}  // namespace quorl::test
