// The running radio steered by a client: the panel follows, and what is tuned can be heard.
#include <gtest/gtest.h>

#include "core/ConfigRig.h"
#include "interaction/PanelTexts.h"
#include "remote/RigctlSession.h"
#include "tuning/FrequencyText.h"

namespace quorl::test {
namespace {

class Remote : public testing::Test {
 protected:
  void Start() {
    ASSERT_TRUE(rig.Start());
    session_.emplace(rig.Frame().Steered());
  }
  // The answer to one line.
  std::string Ask(const std::string& line) {
    std::string answers;
    session_->Take(line + "\n", answers);
    return answers;
  }
  void Do(const std::string& line) { EXPECT_EQ(Ask(line), "RPRT 0\n") << line; }
  // The button of a group that is pressed.
  int Pressed(const std::string& group, int count) {
    for (int i = 0; i < count; ++i)
      if (rig.Text(IndexedName(group, i)) == "1") return i;
    return -1;
  }
  int Mode() { return Pressed("optMode", DemodMode::Count); }
  int Filter() { return Pressed("optFilter", FilterModeCount); }

  FrameRig rig;
  std::optional<RigctlSession> session_;
};

TEST_F(Remote, AFrequencyIsOnTheDigitsAtTheChipAndInTheLoudspeaker) {
  Start();
  Do("\\set_powerstat 1");
  EXPECT_EQ(rig.Text("optPwr(0)"), "1");
  EXPECT_EQ(rig.At("optPwr(0)").BackColour(), 0x00C000U);
  Do("F 7100000.000000");
  EXPECT_EQ(rig.Digits(), "071000000");
  EXPECT_EQ(rig.Oscillator(), 521000000);
  EXPECT_EQ(Ask("f"), "7100000\n");
  Do("M LSB 0");
  rig.Run(1.5);
  EXPECT_GT(rig.Tone(800.0), 1000.0) << "the sideband station is heard";
  Do("F 7090000");
  rig.Run(1.5);
  EXPECT_LT(rig.Tone(800.0), 100.0);
  rig.Wheel("lbl7Seg(2)", 1);  // the panel tunes on, and the client reads it
  EXPECT_EQ(Ask("f"), "7190000\n");
  EXPECT_EQ(Ask("\\get_vfo_info VFOA"), "7190000\nLSB\n2000\n0\n0\n");
}

TEST_F(Remote, FrequenciesThatCannotBeTunedNeverReachTheVFO) {
  Start();
  int wishes = 0;
  const std::int64_t oscillator = rig.Oscillator();
  rig.Frame().Radio().Tuning().Tune().OnWanted = [&] { ++wishes; };
  for (const char* wrong : {"F -1", "F -0.01", "F 135048001", "F 2147483648", "F 1e99", "F nan"})
    EXPECT_EQ(Ask(wrong), "RPRT -1\n") << wrong;
  EXPECT_EQ(wishes, 0);
  EXPECT_EQ(rig.Oscillator(), oscillator);
  EXPECT_EQ(Ask("f"), "7205000\n");
  EXPECT_NE(Ask("\\dump_state").find("\n10000.000000 135048000.000000 "), std::string::npos);
  Do("F 135048000");  // the end that the client has been told
  EXPECT_EQ(Ask("f"), "135048000\n");
  EXPECT_FALSE(rig.At("lblTuningLimit").Visible());
  Do("F 0");
  EXPECT_EQ(Ask("f"), "0\n");
  Do("F 7050000.26");
  EXPECT_EQ(rig.VFO().TunedFrequency(), 70500003);
  EXPECT_EQ(Ask("f"), "7050000\n");
}

TEST_F(Remote, WhileAFrameIsOutTheFrequencyAskedForLastCounts) {
  Start();
  RigctlSession other(rig.Frame().Steered());
  std::string meanwhile;
  rig.Queue.Post([&] {
    ASSERT_TRUE(rig.Frame().Radio().Tuning().Tune().IsWorking());
    other.Take("f\nF 7060000\nf\nF -1\n", meanwhile);
    EXPECT_EQ(rig.Digits(), "070600000");
  });
  Do("F 7050000");
  EXPECT_EQ(meanwhile, "7050000\nRPRT 0\n7060000\nRPRT -1\n");
  EXPECT_EQ(Ask("f"), "7060000\n");
  EXPECT_EQ(rig.Oscillator(), 520600000);
}

TEST_F(Remote, ModesAndWidthsPressTheButtons) {
  Start();
  struct Case {
    const char* Set;
    int Mode, Filter;
    const char* Read;
  };
  for (const Case& each :
       {Case{"M USB 0", DemodMode::USB, 2, "USB\n2000\n"},
        Case{"M USB 2700", DemodMode::USB, 2, "USB\n2000\n"},
        Case{"M USB 2800", DemodMode::USB, 3, "USB\n2700\n"},
        Case{"M LSB -1", DemodMode::LSB, 3, "LSB\n2700\n"},
        Case{"M LSB 99999", DemodMode::LSB, 0, "LSB\n4950\n"}, Case{"M CW 0", DemodMode::USB, 1, "CW\n400\n"},
        Case{"M USB -1", DemodMode::USB, 1, "CW\n400\n"}, Case{"M LSB -1", DemodMode::LSB, 1, "LSB\n400\n"},
        Case{"M PKTUSB 3000", DemodMode::USB, 3, "USB\n2700\n"},
        Case{"M CW -1", DemodMode::USB, 1, "CW\n400\n"}, Case{"M PKTLSB 0", DemodMode::LSB, 2, "LSB\n2000\n"},
        Case{"M CW 2400", DemodMode::USB, 1, "CW\n400\n"}, Case{"M AM 0", DemodMode::AM, 0, "AM\n10000\n"},
        Case{"M AM 8000", DemodMode::AM, 4, "AM\n8000\n"}, Case{"M AM 1", DemodMode::AM, 1, "AM\n1200\n"},
        Case{"M FM 0", DemodMode::FM, 0, "FM\n10000\n"}, Case{"M FM 15000", DemodMode::FM, 0, "FM\n10000\n"},
        Case{"M FM 4000", DemodMode::FM, 4, "FM\n8000\n"}}) {
    Do(each.Set);
    EXPECT_EQ(Mode(), each.Mode) << each.Set;
    EXPECT_EQ(Filter(), each.Filter) << each.Set;
    EXPECT_EQ(Ask("m"), each.Read) << each.Set;
    EXPECT_EQ(rig.Text("lblFilterHi"), std::to_string(rig.Vars().FilterHi)) << each.Set;
    EXPECT_EQ(rig.Text("lblFilterLo"), std::to_string(rig.Vars().FilterLo)) << each.Set;
  }
  rig.Press("optMode", DemodMode::BC);
  EXPECT_EQ(Ask("m"), "AM\n8000\n");
  Do("M AM -1");
  EXPECT_EQ(Mode(), DemodMode::AM) << "it has left BC";
  rig.Press("optMode", DemodMode::DRM);
  EXPECT_EQ(Ask("m").substr(0, 3), "AM\n");
  Do("M AM 0");
  EXPECT_EQ(Mode(), DemodMode::AM);
  EXPECT_EQ(Ask("M WFM 0"), "RPRT -1\n");
  rig.Press("optMode", DemodMode::LSB);
  rig.Set("lblFilterHi", "2500");
  EXPECT_EQ(Ask("m"), "LSB\n2450\n");
}

// The widths that filters are chosen by stand on their buttons.
TEST_F(Remote, EachFilterIsFoundByItsName) {
  Start();
  for (int filter = 0; filter < FilterModeCount; ++filter) {
    const auto hertz = ParseFrequency(FilterModeTexts[static_cast<std::size_t>(filter)].Caption);
    ASSERT_TRUE(hertz);
    Do("M LSB " + std::to_string(std::lround(*hertz)));
    EXPECT_EQ(Filter(), filter);
  }
}

TEST_F(Remote, VolumeAndStrengthAreThoseOfThePanel) {
  Start();
  Do("L AF 0.5");
  EXPECT_EQ(rig.Text("sldOutVolume"), "-1000");
  EXPECT_EQ(rig.Text("lblOutVol"), "-20.0");
  EXPECT_EQ(Ask("l AF"), "0.500000\n");
  rig.Click("chkMute");
  Do("L AF 1");
  EXPECT_EQ(rig.Text("sldOutVolume"), "8000");
  EXPECT_EQ(rig.Text("chkMute"), "0");
  Do("L AF 0");
  EXPECT_EQ(rig.Text("sldOutVolume"), "-10000");
  rig.Set("sldOutVolume", "3500");
  EXPECT_EQ(Ask("l AF"), "0.750000\n");
  EXPECT_EQ(Ask("l STRENGTH"), "-54\n") << "a radio that is off hears nothing";
  Do("\\set_powerstat 1");
  rig.Run(1.0);
  const int strength = std::stoi(Ask("l STRENGTH"));
  EXPECT_GT(strength, 0);
  EXPECT_EQ(rig.Text("lblSMeter"), "S9 +" + std::to_string(strength) + " dB");
}

TEST_F(Remote, PowerIsSwitchedByItsButton) {
  Start();
  EXPECT_EQ(Ask("\\get_powerstat"), "0\n");
  Do("\\set_powerstat 1");
  Do("\\set_powerstat 1");
  rig.Run(0.5);
  EXPECT_GT(rig.Blocks, 5);
  EXPECT_EQ(Ask("\\get_powerstat"), "1\n");
  EXPECT_GT(std::stoi(Ask("l STRENGTH")), 0);
  Do("\\set_powerstat 0");
  EXPECT_EQ(Ask("l STRENGTH"), "-54\n") << "what was heard last is gone";
  EXPECT_EQ(rig.Text("optPwr(1)"), "1");
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_EQ(Ask("\\get_powerstat"), "0\n");
  rig.Click("optPwr(0)");
  EXPECT_EQ(Ask("\\get_powerstat"), "1\n");
  Do("\\set_powerstat 0");
  rig.Sound.BrokenPlayback = 1;
  rig.Frame().Radio().SoundCard().ReleaseDevices();
  EXPECT_EQ(Ask("\\set_powerstat 1"), "RPRT -6\n");
  EXPECT_TRUE(rig.Boxes.Messages.empty()) << "a box that nobody is there to answer";
  EXPECT_EQ(rig.Boxes.Notices.size(), 1U);
  EXPECT_EQ(Ask("\\get_powerstat"), "0\n");
  rig.Click("optPwr(0)");
  EXPECT_EQ(rig.Boxes.Messages.size(), 1U) << "a hand on the panel is asked to read it";
}

TEST_F(Remote, ABoardThatIsGoneIsToldAndGetsTheFrequencyWhenItIsBack) {
  Start();
  rig.Serial.Unplug();
  rig.Run(0.1);
  EXPECT_EQ(Ask("F 7060000"), "RPRT -6\n");
  EXPECT_EQ(Ask("f"), "7060000\n");
  EXPECT_EQ(rig.Digits(), "070600000");
  rig.Serial.Plug();
  rig.Run(0.1);
  EXPECT_EQ(rig.Oscillator(), 520600000);
  Do("F 7070000");
}

class RemotePageTest : public ConfigRig {
 protected:
  std::string State() { return Field("lblRemoteState"); }
  // What a client is told that connects now.
  std::string Ask(std::uint16_t port, const std::string& line) {
    VirtualPeer peer = Network.Connect(port);
    peer.Send(line + "\n");
    Run(0.1);
    return peer.Take();
  }
};

TEST_F(RemotePageTest, ItIsOffUntilItIsTickedAndThenThereAtEachStart) {
  Open();
  EXPECT_FALSE(Network.Listens(4532));
  EXPECT_EQ(State(), "Off");
  EXPECT_EQ(Field("txtRemoteAddress"), "127.0.0.1");
  EXPECT_EQ(Field("txtRemotePort"), "4532");
  Enter("chkRemoteOn", "1");
  Apply();
  EXPECT_EQ(State(), "Listening at 127.0.0.1:4532, no clients");
  EXPECT_EQ(Ask(4532, "F 7100000"), "RPRT 0\n");
  EXPECT_EQ(Digits(), "071000000");
  VirtualPeer peer = Network.Connect(4532);
  Run(0.5);
  EXPECT_EQ(State().substr(State().find(',')), ", 2 clients") << "followed while the window is open";
  Apply();
  EXPECT_FALSE(peer.IsClosed()) << "nothing has changed for it";

  Restart();
  EXPECT_TRUE(peer.IsClosed());
  EXPECT_EQ(Ask(4532, "f"), "7100000\n");
  Click("cmdConfig");
  Enter("chkRemoteOn", "0");
  Apply();
  EXPECT_FALSE(Network.Listens(4532));
  Restart();
  EXPECT_FALSE(Network.Listens(4532));
}

TEST_F(RemotePageTest, AnotherAddressNeedsTheTick) {
  Open();
  Enter("chkRemoteOn", "1");
  Enter("txtRemoteAddress", "0.0.0.0");
  Apply();
  EXPECT_NE(FaultOf("txtRemoteAddress").find("tick that they may connect"), std::string::npos);
  EXPECT_EQ(State(), "Listening at 127.0.0.1:4532, no clients") << "the old address stays";
  Enter("chkRemoteOthers", "1");
  Apply();
  EXPECT_EQ(FaultOf("txtRemoteAddress"), "");
  EXPECT_EQ(State(), "Listening at 0.0.0.0:4532, no clients");
  Enter("chkRemoteOthers", "0");
  Apply();
  EXPECT_FALSE(Network.Listens(4532)) << "the leave is withdrawn";
  EXPECT_NE(FaultOf("txtRemoteAddress"), "");
  Enter("txtRemoteAddress", "localhost");
  Apply();
  EXPECT_EQ(Field("txtRemoteAddress"), "127.0.0.1");
  EXPECT_TRUE(Network.Listens(4532));
}

TEST_F(RemotePageTest, APlaceThatCannotBeHadIsToldAtItsFieldAndTheRadioGoesOn) {
  OpenPlaying();
  Network.TakenPorts = {5000};
  Enter("chkRemoteOn", "1");
  Enter("txtRemotePort", "5000");
  Apply();
  EXPECT_NE(FaultOf("txtRemotePort").find("127.0.0.1:5000"), std::string::npos);
  EXPECT_TRUE(Get<OptionButton>("frmConfig.TabStrip1(8)").Marked());
  EXPECT_EQ(State(), FaultOf("txtRemotePort"));
  EXPECT_TRUE(Plays());
  Enter("chkRemoteOthers", "1");
  Enter("txtRemoteAddress", "192.0.2.1");
  Apply();
  EXPECT_NE(FaultOf("txtRemoteAddress").find("192.0.2.1"), std::string::npos);
  for (const char* port : {"", "0", "65536", "45.5", "abc"}) {
    Enter("txtRemotePort", port);
    Apply();
    EXPECT_NE(FaultOf("txtRemotePort"), "") << port;
  }
  EXPECT_TRUE(Boxes.Messages.empty());
  Enter("txtRemoteAddress", "127.0.0.1");
  Enter("txtRemotePort", "5000");
  Apply();

  Restart();
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_NE(Boxes.Messages[0].Text.find("127.0.0.1:5000"), std::string::npos);
  EXPECT_EQ(Boxes.Messages[0].Text.find('\n'), std::string::npos);
  Click("optPwr(0)");
  EXPECT_TRUE(Plays());
  Network.TakenPorts.clear();
  Click("cmdConfig");
  Apply();
  EXPECT_TRUE(Network.Listens(5000)) << "tried again";
}

}  // namespace
}  // namespace quorl::test
