// The timer's dialog, worked as by a hand.
#include "platform/CalendarDays.h"
#include "recorder/panel/RecorderRig.h"
#include "recorder/panel/TimerPanel.h"

namespace quorl::test {
namespace {

class TimerPanelTest : public RecorderRig {
 protected:
  TimerPanelTest() {
    Clock.SetNow({2026, 11, 23, 18, 0, 0, 0});
    Deck.LastDirectory = "/music";
    Dialog.Open();
  }
  static TimerLinks LinksOfTimer(TimerPanelTest& t) {
    TimerLinks links;
    links.IsOn = [&t] { return t.Power; };
    links.SetPower = [&t](bool on) { t.Power = on; };
    links.Record = [&t](std::int32_t rate) { t.Panel->RecordAt(rate); };
    links.Release = [&t] { t.Panel->TakeEmptyDeck(); };
    return links;
  }
  static TimerPanelLinks LinksOfDialog(TimerPanelTest& t) {
    TimerPanelLinks links;
    links.Plans = [] { return std::vector<std::string>{"Amateur", "Night"}; };
    links.Plan = [](const std::string& name) {
      BandPlan plan;
      plan.Name = name;
      plan.SubBands.resize(3);
      for (SubBand& band : plan.SubBands) band.Presets.resize(kPresetButtons);
      if (name != "Night") return plan;
      SubBand& band = plan.SubBands[2];
      band.Used = true;
      band.Caption = "49m";
      band.Presets[4].Settings.FreqCurrent = 6070000;
      band.Presets[4].Description = "Channel 292";
      return plan;
    };
    links.Tuned = [&t] { return TimerTarget{"", 0, 0, t.Tuned, 1, 3}; };
    links.Highest = [] { return 300000000; };
    links.Changed = [&t] { ++t.Changes; };
    return links;
  }
  void Fill(const char* start, const char* end) {
    Set("txtTimerStart", start);
    Set("txtTimerEnd", end);
  }
  const TimerProgramme& First() { return Timer.Programmes[0]; }
  bool IsRed(const char* name) { return At(name).ForeColour() != kNoColour; }

  int Changes = 0;
  RecordingTimer Timer{Deck, {Storage, Worker, Queue, Boxes, Clock}, LinksOfTimer(*this)};
  TimerPanel Dialog{Names, Timer, Deck, Clock, LinksOfDialog(*this)};
};

TEST_F(TimerPanelTest, AFreeLineSuggestsWhatIsHeardAndANightEndsOnTheNextDay) {
  EXPECT_EQ(Text("txtTimerDate"), "2026-11-23");
  EXPECT_EQ(Text("txtTimerFreq"), "7205");
  EXPECT_EQ(Text("optTimerMode(1)"), "1");
  Fill("23:30", "1:05");
  Press("optTimerRepeat", 2);
  Press("optTimerRate", 5);
  Click("cmdTimerSave");
  EXPECT_TRUE(First().Active);
  EXPECT_EQ(DateText(First().Start), "2026-11-23 23:30:00");
  EXPECT_EQ(DateText(First().End), "2026-11-24 01:05:00");
  EXPECT_EQ(First().Repeat, TimerRepeat::Weekly);
  EXPECT_EQ(First().Rate, TimerProgramme::kIF);
  EXPECT_EQ(First().Target, (TimerTarget{"", 0, 0, 72050000, 1, 3}));
  EXPECT_EQ(Text("lstTimer"), "1  on   2026-11-23 23:30 01:05 Weekly  IF    7205 kHz USB");
  EXPECT_EQ(Text("lblTimerMessage"), "The timer records at 2026-11-23 23:30");
  EXPECT_EQ(Changes, 1);
  EXPECT_TRUE(At("frmTimer").Visible());
  At("frmTimer").KeyDown(Key{Key::Escape, {}});
  EXPECT_FALSE(At("frmTimer").Visible());
  Click("cmdTimer");
  EXPECT_EQ(Text("txtTimerEnd"), "01:05") << "as it was saved";
}

// What is told stands at its field, which keeps what was typed.
TEST_F(TimerPanelTest, FaultsAreToldAtTheirField) {
  struct Case {
    const char *Field, *Typed, *Word;
  };
  Fill("18:30", "19:00");
  for (const Case& each :
       {Case{"txtTimerDate", "2026-02-30", "date"}, Case{"txtTimerStart", "24:30", "start"},
        Case{"txtTimerEnd", "seven", "end"}, Case{"txtTimerEnd", "18:30", "end"},
        Case{"txtTimerFreq", "fm", "frequency"}, Case{"txtTimerFreq", "30001", "30,000.0 kHz"}}) {
    const std::string before = Text(each.Field);
    Set(each.Field, each.Typed);
    At("frmTimer").KeyDown(Key{Key::Enter, {}});
    EXPECT_TRUE(IsRed(each.Field)) << each.Typed;
    EXPECT_EQ(Text(each.Field), each.Typed);
    EXPECT_NE(Text("lblTimerMessage").find(each.Word), std::string::npos) << Text("lblTimerMessage");
    EXPECT_NE(At(each.Field).ToolTip().find(each.Word), std::string::npos) << At(each.Field).ToolTip();
    Set(each.Field, before);
    EXPECT_FALSE(IsRed(each.Field)) << each.Typed;
  }
  EXPECT_EQ(First(), TimerProgramme{});
  Set("txtTimerDate", "2026-11-22");
  Click("cmdTimerSave");
  EXPECT_TRUE(IsRed("txtTimerEnd")) << "it has passed";
  Click("chkTimerOn");
  Click("cmdTimerSave");
  EXPECT_FALSE(First().Active);
  EXPECT_EQ(DateText(First().Start), "2026-11-22 18:30:00") << "one that is off may have passed";
  Click("chkTimerOn");
  Press("optTimerRepeat", 1);
  Click("cmdTimerSave");
  EXPECT_EQ(DateText(First().Start), "2026-11-23 18:30:00") << "a daily one has its next time";
}

TEST_F(TimerPanelTest, APresetIsChosenFromAPlanThatHasSome) {
  Fill("1830", "19:00:30");
  Set("cboTimerPlan", "Amateur");
  EXPECT_EQ(Text("optTimerTarget(0)"), "1") << "who chooses a plan means a preset";
  Click("cmdTimerSave");
  EXPECT_NE(Text("lblTimerMessage").find("no presets"), std::string::npos);
  Set("cboTimerPlan", "Night");
  Click("cmdTimerSave");
  EXPECT_EQ(First(), TimerProgramme{});
  Set("cboTimerSubBand", "49m");
  Set("cboTimerPreset", "6070 Channel 292");
  Click("cmdTimerSave");
  EXPECT_EQ(First().Target, (TimerTarget{"Night", 2, 4, 0, 0, 0}));
  EXPECT_EQ(DateText(First().End), "2026-11-23 19:00:30");
  EXPECT_NE(Text("lstTimer").find("Night 49m 6070 Channel 292"), std::string::npos) << Text("lstTimer");
  Set("lstTimer", "3");
  EXPECT_EQ(Text("optTimerTarget(1)"), "1");
  Set("lstTimer", "0");
  EXPECT_EQ(Text("cboTimerPreset"), "6070 Channel 292");
  Tuned = 60700000;
  Click("cmdTimerTuned");
  Click("cmdTimerSave");
  EXPECT_EQ(First().Target, (TimerTarget{"", 0, 0, 60700000, 1, 3}));
}

// The end of what runs can be moved; what is taken away is saved as far as it got, at the user's own rate
// again.
TEST_F(TimerPanelTest, ARunningProgrammeIsMovedOrEnded) {
  Deck.SetDecimator(2);
  Timer.Start();
  Fill("18:00", "18:01");
  Press("optTimerRate", 3);
  Click("cmdTimerSave");
  Hear(3);
  ASSERT_EQ(Timer.Running(), 0U);
  Dialog.ShowList();
  EXPECT_EQ(Text("lstTimer").substr(0, 6), "1  now");
  EXPECT_EQ(Text("optRecordSampleRate(3)"), "1");
  std::int32_t written = 0;
  Panel->WithOwnChoice([&] { written = Deck.Decimator(); });
  EXPECT_EQ(written, 2) << "what the settings keep";
  EXPECT_EQ(Deck.Decimator(), 8);
  Set("txtTimerEnd", "18:30");
  Click("cmdTimerSave");
  Hear(70);
  EXPECT_EQ(Timer.Running(), 0U);
  Click("cmdTimerClear");
  EXPECT_FALSE(Timer.Running());
  EXPECT_EQ(First(), TimerProgramme{});
  EXPECT_TRUE(Storage.Exists("/music/2026-11-23 1800 7205 kHz.wav"));
  EXPECT_EQ(Deck.Decimator(), 2);
  EXPECT_EQ(Text("optRecordSampleRate(1)"), "1");
  EXPECT_FALSE(Power);
  EXPECT_EQ(Text("lblTimerMessage"), "");
}

}  // namespace
}  // namespace quorl::test
