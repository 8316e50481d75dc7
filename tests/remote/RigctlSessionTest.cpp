// The protocol as clients speak it, against a radio that only remembers.
#include "remote/RigctlSession.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "remote/RememberedRadio.h"

namespace quorl::test {
namespace {

struct Exchange {
  std::string Sent, Answered;
};

class RigctlSessionTest : public testing::Test {
 protected:
  // What is answered to these bytes, which come at once.
  std::string Ask(const std::string& bytes) {
    std::string answers;
    TakeAll(bytes, answers);
    return answers;
  }
  // Turn by turn until nothing more is taken. Returns what is left.
  std::string TakeAll(std::string bytes, std::string& answers) {
    while (const std::size_t taken = session_.Take(bytes, answers)) bytes.erase(0, taken);
    return bytes;
  }
  void Talk(const std::vector<Exchange>& exchanges) {
    for (const Exchange& each : exchanges) EXPECT_EQ(Ask(each.Sent + "\n"), each.Answered) << each.Sent;
  }

  RememberedRadio radio_;
  RigctlSession session_{radio_};
};

// As rigctl, loggers and decoders open each connection.
TEST_F(RigctlSessionTest, AClientOpensItsConnectionAndLeavesIt) {
  Talk({{"\\chk_vfo", "0\n"},
        {"\\dump_state",
         "1\n1\n0\n"
         "10000.000000 135048000.000000 0x2f -1 -1 0x1 0x1\n0 0 0 0 0 0 0\n0 0 0 0 0 0 0\n"
         "0x2f 1\n0 0\n0xc 2400\n0x2 400\n0x21 10000\n0 0\n"
         "0\n0\n0\n0\n0\n0\n0x0\n0x0\n0x40000008\n0x8\n0x0\n0x0\n"
         "vfo_ops=0x0\nptt_type=0x0\ntargetable_vfo=0x3\nhas_set_freq=1\nhas_get_freq=1\ndone\n"},
        {"v", "VFOA\n"},
        {"f", "145000000\n"},
        {"s", "0\nVFOA\n"},
        {"m", "FM\n15000\n"},
        {"\\get_powerstat", "1\n"},
        {"\\get_lock_mode", "0\n"},
        {"q", "RPRT 0\n"}});
  EXPECT_TRUE(session_.Ended());
}

TEST_F(RigctlSessionTest, WhatIsSetIsReadBack) {
  radio_.Highest = 8000000;  // another board
  EXPECT_NE(Ask("\\dump_state\n").find("\n10000.000000 8000000.000000 0x2f"), std::string::npos);
  Talk({{"F 7050000.000000", "RPRT 0\n"},
        {"f", "7050000\n"},
        {"M USB 2400", "RPRT 0\n"},
        {"m", "USB\n2400\n"},
        {"M CW -1", "RPRT 0\n"},
        {"m", "CW\n2400\n"},
        {"M PKTLSB 0", "RPRT 0\n"},
        {"m", "LSB\n0\n"},
        {"M pktusb 500", "RPRT 0\n"},
        {"m", "USB\n500\n"},
        {"M AM 10000.0", "RPRT 0\n"},
        {"m", "AM\n10000\n"},
        {"l STRENGTH", "-5\n"},
        {"l AF", "0.500000\n"},
        {"L AF 0.25", "RPRT 0\n"},
        {"l AF", "0.250000\n"},
        {"\\set_powerstat 0", "RPRT 0\n"},
        {"\\get_powerstat", "0\n"},
        {"\\set_powerstat 1", "RPRT 0\n"},
        {"\\get_powerstat", "1\n"},
        {"\\get_vfo_info VFOA", "7050000\nAM\n10000\n0\n0\n"},
        {"V Main", "RPRT 0\n"},
        {"V VFOA", "RPRT 0\n"},
        {"V currVFO", "RPRT 0\n"},
        {"_", "a radio\n"}});
  EXPECT_FALSE(session_.Ended());
}

// By hand, on a terminal.
TEST_F(RigctlSessionTest, ASignAsksForNames) {
  radio_.Hertz = 7050000.4;
  radio_.Set = RemoteMode::USB;
  radio_.Width = 2400;
  Talk({{"+f", "get_freq:\nFrequency: 7050000\nRPRT 0\n"},
        {"\\get_freq", "7050000\n"},
        {"+\\set_freq 7050000", "set_freq: 7050000\nRPRT 0\n"},
        {"+m", "get_mode:\nMode: USB\nPassband: 2400\nRPRT 0\n"},
        {"+M USB 2400", "set_mode: USB 2400\nRPRT 0\n"},
        {"+v", "get_vfo:\nVFO: VFOA\nRPRT 0\n"},
        {"+s", "get_split_vfo:\nSplit: 0\nTX VFO: VFOA\nRPRT 0\n"},
        {"+l STRENGTH", "get_level: STRENGTH\n-5\nRPRT 0\n"},
        {"+L AF 0.5", "set_level: AF 0.5\nRPRT 0\n"},
        {"+t", "get_ptt:\nRPRT -11\n"},
        {"+_", "get_info:\nInfo: a radio\nRPRT 0\n"},
        {"+\\get_lock_mode", "get_lock_mode:\nLocked: 0\nRPRT 0\n"},
        {"+\\get_powerstat", "get_powerstat:\nPower Status: 1\nRPRT 0\n"},
        {"+\\get_vfo_info VFOA",
         "get_vfo_info: VFOA\nFreq: 7050000\nMode: USB\nWidth: 2400\nSplit: 0\nSatMode: 0\nRPRT 0\n"},
        {"+\\chk_vfo", "ChkVFO: 0\n"},
        {";\\chk_vfo", "ChkVFO: 0\n"},
        {"+F abc", "set_freq: abc\nRPRT -1\n"},
        {"+ f", "get_freq:\nFrequency: 7050000\nRPRT 0\n"}});
  for (const std::string sign : {";", "|", ",", "/", "!", "$"}) {
    EXPECT_EQ(Ask(sign + "f\n"), "get_freq:" + sign + "Frequency: 7050000" + sign + "RPRT 0\n");
    EXPECT_EQ(Ask(sign + "F -1\n"), "set_freq: -1" + sign + "RPRT -1\n");
  }
}

TEST_F(RigctlSessionTest, SeveralCommandsStandInALine) {
  radio_.Hertz = 7050000;
  Talk({{"f m v", "7050000\nFM\n15000\nVFOA\n"},
        {"fmv", "7050000\nFM\n15000\nVFOA\n"},
        {"F7060000 m f\r", "RPRT 0\nFM\n15000\n7060000\n"},
        {"+f m", "get_freq:\nFrequency: 7060000\nRPRT 0\nFM\n15000\n"},
        {"\t f\r\n\n  \r\n# f is what I'd ask\nf", "7060000\n7060000\n"},
        {"F abc m", "RPRT -1\nFM\n15000\n"},
        {"f q f", "7060000\nRPRT 0\n"}});
}

TEST_F(RigctlSessionTest, WhatCannotBeIsRefusedAndChangesNothing) {
  for (const std::string wrong : {"F abc",
                                  "F",
                                  "F -1",
                                  "F -0.5",
                                  "F 135048001",
                                  "F nan",
                                  "F inf",
                                  "F 1e300",
                                  "F 7,05",
                                  "M USB",
                                  "M FOO 2400",
                                  "M USB abc",
                                  "M USB -2",
                                  "M USB 1e12",
                                  "M RTTY 0",
                                  "M",
                                  "V",
                                  "V Third",
                                  "l",
                                  "L",
                                  "L AF",
                                  "L AF 1.5",
                                  "L AF -0.1",
                                  "L AF nan",
                                  "\\set_powerstat",
                                  "\\set_powerstat 2",
                                  "\\get_vfo_info",
                                  "\\get_vfo_info me"}) {
    EXPECT_EQ(Ask(wrong + "\n"), "RPRT -1\n") << wrong;
  }
  for (const std::string missing :
       {"t", "T 1", "l SQL", "L SQL 0.5", "L STRENGTH 1", "V VFOB", "V Sub", "\\get_vfo_info VFOB", "\\foo",
        "\\foo f f", "\\", "+\\foo", "x", "X 1 2", "=", "\\set_freqs 1", "\\GET_FREQ"}) {
    EXPECT_EQ(Ask(missing + "\n"), "RPRT -11\n") << missing;
  }
  EXPECT_EQ(Ask(std::string("\0\n", 2) + std::string("f\0\n", 3)), "RPRT -11\n145000000\nRPRT -11\n");
  EXPECT_EQ(Ask("f m v\n"), "145000000\nFM\n15000\nVFOA\n");
  EXPECT_EQ(radio_.Place, 0.5);
  EXPECT_TRUE(radio_.On);
}

TEST_F(RigctlSessionTest, WhatTheRadioCannotDoNowHasACodeOfItsOwn) {
  radio_.Outcome = RemoteOutcome::Refused;
  Talk({{"F 7050000", "RPRT -9\n"}, {"f", "145000000\n"}});
  radio_.Outcome = RemoteOutcome::Unreachable;
  Talk({{"F 7050000", "RPRT -6\n"}, {"f", "7050000\n"}, {"\\set_powerstat 0", "RPRT -6\n"}});
}

TEST_F(RigctlSessionTest, ALineComesInWhateverPieces) {
  const std::string text =
      "F 7050000\r\n+f m\n\n;l AF\n\\get_vfo_info VFOA\nfmv F 1 +f\nF abc\n\\foo bar\nq\n";
  const std::string whole = Ask(text);
  for (std::size_t piece = 1; piece < text.size(); ++piece) {
    RememberedRadio radio;
    RigctlSession session(radio);
    std::string waiting, answers;
    for (std::size_t at = 0; at < text.size(); at += piece) {
      waiting += text.substr(at, piece);
      while (const std::size_t taken = session.Take(waiting, answers)) waiting.erase(0, taken);
    }
    EXPECT_EQ(answers, whole) << piece;
    EXPECT_EQ(waiting, "");
    EXPECT_TRUE(session.Ended());
  }
}

TEST_F(RigctlSessionTest, ALineThatIsTooLongEndsTheConversation) {
  std::string answers;
  const std::string longest = "F 7050000" + std::string(RigctlSession::kLongestLine - 9, ' ');
  EXPECT_EQ(TakeAll(longest, answers), longest);  // its end may come yet
  EXPECT_EQ(TakeAll(longest + "\nf\n", answers), "");
  EXPECT_EQ(answers, "RPRT 0\n7050000\n");
  EXPECT_FALSE(session_.Ended());
  answers.clear();
  EXPECT_EQ(TakeAll(longest + " ", answers), "");
  EXPECT_EQ(answers, "RPRT -1\n");
  EXPECT_TRUE(session_.Ended());
  EXPECT_EQ(TakeAll("f\n", answers), "");
  EXPECT_EQ(answers, "RPRT -1\n") << "nothing is answered after the end";
}

TEST_F(RigctlSessionTest, AClientThatDoesNotReadIsNotServedOn) {
  std::string bytes, answers;
  for (int i = 0; i < 10000; ++i) bytes += i % 2 == 0 ? "\\dump_state\n" : "+m\n";
  for (int turn = 0; turn < 3; ++turn) {
    bytes = TakeAll(bytes, answers);
    EXPECT_LE(answers.size(), RigctlSession::kMostWaiting);
    EXPECT_GT(answers.size(), RigctlSession::kMostWaiting - 4096);
    EXPECT_GT(bytes.size(), 20000U);
    answers.erase(0, 40000);  // it has read some
  }
}

TEST_F(RigctlSessionTest, AClientLeavesRoomForOthersAfterAFewCommands) {
  std::string answers;
  const std::string line(1000, 'f');
  const auto few = static_cast<std::size_t>(RigctlSession::kCommandsPerTurn);
  EXPECT_EQ(session_.Take(line + "\n", answers), few);
  EXPECT_EQ(answers.size(), few * std::string("145000000\n").size());
  EXPECT_EQ(session_.Take(std::string(1000, '\n'), answers), few) << "empty lines, too";
}

TEST_F(RigctlSessionTest, WhileAFrameIsOutOtherClientsAreServedAndThisOneWaits) {
  RigctlSession other(radio_);
  std::string answers, others;
  std::size_t mine = 1, its = 0;
  radio_.DuringFrame = [&] {
    if (others.empty()) its = other.Take("f\nF 7060000\n", others);
    mine = session_.Take("F 1\n", answers);
  };
  EXPECT_EQ(session_.Take("F 7050000\nf\n", answers), 12U);
  EXPECT_EQ(mine, 0U);
  EXPECT_EQ(its, 12U);
  EXPECT_EQ(others, "7050000\nRPRT 0\n");
  EXPECT_EQ(answers, "RPRT 0\n7060000\n");
}

}  // namespace
}  // namespace quorl::test
