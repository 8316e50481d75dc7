// DRM mode on the running radio: the decoder comes and goes, and the sound card always comes back.
#include <gtest/gtest.h>

#include <utility>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

constexpr char kNoSound[] = "Unable to start DirectSound. Check proper sound card installation";

// The options of a decoder, in one number.
enum Option { kRuns = 1, kMutes = 2, kCloses = 4, kEndsOnExit = 8, kEndsOnChange = 16 };

std::string SettingsWith(int options) {
  const auto line = [options](const char* key, int option) {
    return std::string("DRM.") + key + ((options & option) != 0 ? "=True\n" : "=False\n");
  };
  return "[frmMain]\nAutoStartSDR=True\nDRM.PathToDream=/opt/drm/DREAM.exe\n" + line("RunDreamOnDRM", kRuns) +
         line("MuteAFOnDRM", kMutes) + line("CloseSoundcardOnDRM", kCloses) +
         line("DreamCloseOnExit", kEndsOnExit) + line("DreamCloseOnModeChange", kEndsOnChange);
}

struct DecoderRig : FrameRig {
  explicit DecoderRig(int options, const std::string& more = {}) : FrameRig(SettingsWith(options) + more) {
    KeepAudio = false;
  }
  void Mode(int mode, double seconds = 0.5) {
    Press("optMode", mode);
    Run(seconds);
  }
  QUORLDX8& Card() { return Frame().Radio().SoundCard(); }
  bool IsReleased() { return Frame().Decoder().IsSoundReleased(); }
  // Blocks have come for the loudspeaker in the last second.
  bool Plays() {
    const std::int64_t before = Blocks;
    Run(1.0);
    return Blocks > before + 20;
  }
  // A decoder that takes its time to close.
  void CloseSlowly(double seconds) {
    slow_ = Queue.CreateTimer([this] {
      slow_->Stop();
      if (!Programs.Closed.empty()) Programs.End(Programs.Closed.back());
    });
    Programs.OnClose = [this, seconds](int) {
      slow_->Start(std::chrono::milliseconds(static_cast<int>(seconds * 1000)));
    };
  }

 private:
  std::unique_ptr<QueueTimer> slow_;
};

TEST(FrmMainDecoder, EveryCombinationOfOptionsGivesTheSoundCardBack) {
  for (int options = 0; options < 32; ++options) {
    SCOPED_TRACE(options);
    DecoderRig rig(options);
    ASSERT_TRUE(rig.Start());
    rig.Run(0.5);
    const bool runs = (options & kRuns) != 0, closes = (options & kCloses) != 0,
               endsOnChange = (options & kEndsOnChange) != 0, endsOnExit = (options & kEndsOnExit) != 0;
    rig.Mode(DemodMode::DRM);
    for (int again = 0; again < 2; ++again) {
      EXPECT_EQ(rig.Programs.Starts.size(), runs ? 1U : 0U);
      EXPECT_EQ(rig.Programs.Children.size(), runs ? 1U : 0U);
      EXPECT_EQ(rig.Card().Prepared(), !closes);
      EXPECT_EQ(rig.IsReleased(), closes);
      EXPECT_EQ(rig.Vars().DRMAudioMuted, (options & kMutes) != 0);
      EXPECT_TRUE(rig.Frame().IsOn());
      EXPECT_EQ(rig.Text("optPwr(0)"), "1");
      rig.Mode(DemodMode::DRM);  // as a recall does several times
    }
    EXPECT_EQ(rig.Plays(), !closes);
    rig.Mode(DemodMode::AM);
    EXPECT_TRUE(rig.Plays());
    EXPECT_FALSE(rig.IsReleased() || rig.Vars().DRMAudioMuted);
    EXPECT_EQ(rig.Programs.Closed.size(), runs && endsOnChange ? 1U : 0U);
    rig.Stop();
    EXPECT_EQ(rig.Programs.Closed.size(), runs && (endsOnChange || endsOnExit) ? 1U : 0U);
    EXPECT_EQ(rig.Programs.Running.size(), runs && !endsOnChange && !endsOnExit ? 1U : 0U);
    EXPECT_TRUE(rig.Boxes.Messages.empty() && rig.Boxes.Notices.empty());
  }
}

TEST(FrmMainDecoder, AHundredTimesInAndOut) {
  DecoderRig rig(kRuns | kCloses | kEndsOnChange);
  ASSERT_TRUE(rig.Start());
  rig.CloseSlowly(1.5);
  for (std::size_t round = 1; round <= 100; ++round) {
    rig.Mode(DemodMode::DRM, 0.1);
    ASSERT_EQ(rig.Programs.Starts.size(), round);
    rig.Mode(round % 2 == 0 ? DemodMode::AM : DemodMode::USB, 1.4);
    EXPECT_FALSE(rig.Card().Prepared()) << "the decoder still has it";
    EXPECT_TRUE(rig.IsReleased());
    rig.Run(0.3);
    ASSERT_TRUE(rig.Card().InAction);
    ASSERT_TRUE(rig.Programs.Running.empty());
  }
  EXPECT_TRUE(rig.Plays());
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

TEST(FrmMainDecoder, AModeThatChangesMeanwhileIsFollowed) {
  DecoderRig rig(kRuns | kCloses | kEndsOnChange);
  ASSERT_TRUE(rig.Start());
  rig.CloseSlowly(1.5);
  rig.Mode(DemodMode::DRM);
  rig.Mode(DemodMode::AM);
  rig.Mode(DemodMode::DRM);
  EXPECT_EQ(rig.Programs.Starts.size(), 1U) << "the first one has to go";
  rig.Run(1.0);
  EXPECT_EQ(rig.Programs.Starts.size(), 2U);
  EXPECT_FALSE(rig.Card().Prepared());
  // Off while the sound card waits for the decoder: nothing opens by itself.
  rig.Mode(DemodMode::USB);
  rig.Press("optPwr", 1);
  rig.Run(3.0);
  EXPECT_FALSE(rig.Card().Prepared() || rig.IsReleased());
  rig.Press("optPwr", 0);
  EXPECT_TRUE(rig.Plays());

  // One that stays costs three seconds, and no second one comes beside it.
  rig.Programs.OnClose = [](int) {};
  rig.Mode(DemodMode::DRM);
  rig.Mode(DemodMode::AM, 2.9);
  EXPECT_FALSE(rig.Card().Prepared());
  rig.Run(0.2);
  EXPECT_TRUE(rig.Card().InAction);
  rig.Mode(DemodMode::DRM, 4.0);
  EXPECT_EQ(rig.Programs.Starts.size(), 3U);
  const auto& log = rig.Log->Lines();
  EXPECT_TRUE(std::any_of(log.begin(), log.end(), [](const std::string& line) {
    return line.find("The decoder was asked to close, and stays") != std::string::npos;
  }));
}

TEST(FrmMainDecoder, TheDecoderStillHoldsTheDevice) {
  DecoderRig rig(kRuns | kCloses);
  ASSERT_TRUE(rig.Start());
  rig.Mode(DemodMode::DRM);
  rig.Sound.RefuseCapture(Error{16, "busy"});
  rig.Mode(DemodMode::AM);
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Boxes.Messages[0].Text, kNoSound);
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_EQ(rig.Text("optPwr(1)"), "1");
  rig.Sound.RefuseCapture({});
  rig.Press("optPwr", 0);
  EXPECT_TRUE(rig.Plays());
}

TEST(FrmMainDecoder, ThePowerInDRMMode) {
  DecoderRig rig(kRuns | kCloses);
  ASSERT_TRUE(rig.Start());
  rig.Press("optPwr", 1);
  rig.Mode(DemodMode::DRM);
  EXPECT_EQ(rig.Programs.Starts.size(), 1U);
  EXPECT_FALSE(rig.Card().Prepared()) << "also what stood open while the power was off";
  rig.Press("optPwr", 0);
  EXPECT_FALSE(rig.Plays());
  EXPECT_TRUE(rig.Frame().IsOn() && rig.IsReleased());
  EXPECT_EQ(rig.Text("lblDecoder"), "The decoder has the sound card");
  EXPECT_EQ(rig.Text("lblRecorderState"), "Nothing comes in: the decoder has the sound card");
  // What was released comes back whatever the option says by then.
  rig.Frame().Decoder().CloseSoundcardOnDRM = false;
  rig.Mode(DemodMode::AM);
  EXPECT_TRUE(rig.Plays());
  EXPECT_EQ(rig.Text("lblRecorderState"), "Ready");
  // And is not let go of where it isn't ticked any more.
  rig.Mode(DemodMode::DRM);
  EXPECT_TRUE(rig.Plays());
  EXPECT_FALSE(rig.IsReleased());
}

TEST(FrmMainDecoder, NoPresetIsCapturedDuringTheLaunch) {
  DecoderRig rig(kRuns);
  rig.Storage.Put("plans/Amateur.bpl", kTinyPlan);
  ASSERT_TRUE(rig.Start());
  rig.Click("optSubBand(0)");
  rig.Run(1.0);
  const auto kept = [&] { return rig.Frame().Memories().Plan()->SubBands[0].Settings.FilterMode; };
  const std::int32_t before = kept();
  int during = -1;
  rig.Programs.OnStart = [&](int) {
    rig.Queue.Post([&] {
      EXPECT_TRUE(rig.Frame().Dream().RunDreamBusy);
      rig.Press("optFilter", (before + 1) % 5);
      rig.Frame().Memories().tmrSubBands_Timer();
      during = kept();
    });
  };
  rig.Mode(DemodMode::DRM, 0.1);
  EXPECT_EQ(during, before);
  rig.Run(1.0);
  EXPECT_EQ(kept(), (before + 1) % 5);
}

TEST(FrmMainDecoder, AnEndDuringTheLaunchLeavesNoDecoder) {
  {
    DecoderRig rig(kRuns | kEndsOnExit);
    ASSERT_TRUE(rig.Start());
    rig.Programs.OnStart = [&](int) { rig.Queue.Post([&] { rig.Frame().Form_Unload(); }); };
    rig.Mode(DemodMode::DRM);
    EXPECT_EQ(rig.Programs.Closed.size(), 1U);
    EXPECT_TRUE(rig.Programs.Running.empty());
  }
  // The control file can't be written, and the program ends while the box says so.
  DecoderRig rig(kRuns | kEndsOnExit);
  ASSERT_TRUE(rig.Start());
  rig.Storage.Fail(FileOperation::Replace, Error{30, "Can't write"});
  bool ends = false;
  rig.Boxes.WhileOpen = [&] {
    if (!std::exchange(ends, true)) rig.Frame().Form_Unload();
  };
  rig.Mode(DemodMode::DRM);
  EXPECT_FALSE(rig.Boxes.Messages.empty());
  EXPECT_TRUE(rig.Programs.Starts.empty());
}

// Whoever changes the mode: the frequency, side and devices of a start are those when all of it is through.
TEST(FrmMainDecoder, AMemoryEntersDRMAsAClickDoesAlsoAtTheStart) {
  DecoderRig rig(kRuns | kEndsOnExit | kCloses);
  rig.Storage.Put("plans/Amateur.bpl",
                  "[MainBand]\r\n[SubBand.0]\r\nFreqMin=7000000\r\nFreqMax=7300000\r\nActivePreset=0\r\n"
                  "[Preset.0.0]\r\nDemodMode=3\r\nFreqCurrent=7250000\r\nLowSideLO=True\r\n");
  ASSERT_TRUE(rig.Start());
  rig.Frame().Dream().DreamProgArgs = "%CurFreq%";
  rig.Mode(DemodMode::AM);
  rig.Frame().Radio().Rx.SetLowSideLO(false);
  rig.Click("optPreset(0)");
  rig.Run(0.5);
  ASSERT_EQ(rig.Programs.Starts.size(), 1U);
  EXPECT_EQ(rig.Programs.Starts[0].Arguments, " -M 0 -I 1 -O 1  7250");
  EXPECT_EQ(rig.Programs.Starts[0].Directory, "plans");
  Failure failure;
  EXPECT_NE(rig.Storage.Read("plans/Dream.ini", failure)->find("flipspectrum=1"), std::string::npos);
  rig.Restart();
  EXPECT_TRUE(rig.Programs.Running.empty());
  rig.Run(0.5);
  ASSERT_EQ(rig.Programs.Starts.size(), 2U) << "the radio is found as it was left";
  EXPECT_EQ(rig.Programs.Starts[1].Arguments, " -M 0 -I 1 -O 1  7250");
  EXPECT_FALSE(rig.Card().Prepared());
  EXPECT_TRUE(rig.Frame().IsOn());
}

TEST(FrmMainDecoder, DRMModePlaysOnADeviceOfItsOwn) {
  DecoderRig rig(kRuns | kMutes, "DRM.PlaybackDevice=Headset\nCurrentPlaybackDeviceName=Loudspeaker\n");
  ASSERT_TRUE(rig.Start());
  rig.Run(0.5);
  EXPECT_EQ(rig.Card().CurrentPlaybackDevice, 1);
  rig.Click("chkMute");
  rig.Run(0.5);
  EXPECT_EQ(rig.Attenuation, -10000);
  rig.Mode(DemodMode::DRM);
  EXPECT_TRUE(rig.Plays());
  EXPECT_EQ(rig.Card().CurrentPlaybackDevice, 2);
  EXPECT_FALSE(rig.Vars().DRMAudioMuted);
  EXPECT_EQ(rig.Attenuation, 0) << "the decoder hears what the loudspeaker is spared";
  EXPECT_EQ(rig.Programs.Starts.at(0).Arguments, " -M 0 -I 1 -O 1  ");
  rig.Frame().SaveSettings();
  EXPECT_EQ(rig.Store().GetSetting("frmMain", "CurrentPlaybackDevice", ""), "1");
  EXPECT_EQ(rig.Store().GetSetting("frmMain", "CurrentPlaybackDeviceName", ""), "Loudspeaker");
  // Another usual one chosen meanwhile waits for its turn.
  rig.Sound.AddPlaybackDevice("Shelf", nullptr);
  rig.Card().RefreshDevices();
  EXPECT_FALSE(rig.Frame().Radio().ChangeDevices(2, 3));
  EXPECT_EQ(rig.Card().CurrentPlaybackDevice, 2);
  EXPECT_EQ(rig.Frame().Radio().UsualPlaybackDevice(), 3);
  EXPECT_FALSE(rig.Frame().Radio().ChangeDevices(1, 1));
  // Off and on, it is still DRM mode's.
  rig.Press("optPwr", 1);
  rig.Press("optPwr", 0);
  EXPECT_TRUE(rig.Plays());
  EXPECT_EQ(rig.Card().CurrentPlaybackDevice, 2);
  rig.Mode(DemodMode::AM);
  EXPECT_TRUE(rig.Plays());
  EXPECT_EQ(rig.Card().CurrentPlaybackDevice, 1);
  EXPECT_EQ(rig.Attenuation, -10000) << "muted as before";
  EXPECT_TRUE(rig.Boxes.Notices.empty());

  // Where it is gone the usual one plays, silenced as wanted.
  rig.Frame().Decoder().PlaybackDevice = "Null sink";
  rig.Mode(DemodMode::DRM);
  EXPECT_TRUE(rig.Plays());
  EXPECT_EQ(rig.Card().CurrentPlaybackDevice, 1);
  EXPECT_TRUE(rig.Vars().DRMAudioMuted);
  ASSERT_EQ(rig.Boxes.Notices.size(), 1U);
  EXPECT_EQ(rig.Boxes.Notices[0].Text,
            "The playback device for DRM mode, \"Null sink\", is not there: the usual one plays.");
}

TEST(FrmMainDecoder, ALineTellsWhatTheDecoderHearsThrough) {
  DecoderRig rig(0);
  ASSERT_TRUE(rig.Start());
  Label& line = rig.Get<Label>("lblDecoder");
  EXPECT_FALSE(line.Visible());
  rig.Mode(DemodMode::DRM);
  rig.Frame().Radio().Rx.SwitchAGC(true);
  EXPECT_TRUE(line.Visible());
  EXPECT_EQ(line.Caption(), "Decoder hears through AGC");
  Receiver& rx = rig.Frame().Radio().Rx;
  rx.SwitchNoiseBlanker(true);
  rx.SwitchIFFilter(true);
  rx.SetIFFilterMode(IFFilterMode::Track);
  rx.SwitchNotch(true);
  rx.SetDynamicFilter(true);
  EXPECT_EQ(line.Caption(), "Decoder hears through NB, IF filter, notch, dyn, AGC");
  rx.SetBoard(SDRModel::IQXtalRX, false);
  EXPECT_EQ(line.Caption(), "Decoder hears through IF filter, notch, dyn, AGC") << "I and Q know no blanker";
  rx.SwitchNotch(false);
  rx.SetDynamicFilter(false);
  rx.SwitchIFFilter(false);
  rx.SwitchAGC(false);
  EXPECT_FALSE(line.Visible());
}

}  // namespace
}  // namespace quorl::test
