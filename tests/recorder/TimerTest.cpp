#include <random>

#include "platform/CalendarDays.h"
#include "recorder/DeckRig.h"
#include "recorder/RecordingTimer.h"

namespace quorl::test {
namespace {

double At(const char* date) {
  return *ParseDate(date);
}

// A radio of two switches around the deck.
class TimerTest : public DeckRig {
 protected:
  TimerTest() {
    Clock.SetNow({2026, 11, 23, 18, 0, 0, 0});
    Deck.LastDirectory = "/music";
    Timer.Start();
  }
  static TimerLinks Links(TimerTest& t) {
    TimerLinks links;
    links.Tune = [&t](const TimerTarget& target) {
      t.Tuned = target.Freq;
      return t.TuneFault;
    };
    links.IsOn = [&t] { return t.On; };
    links.SetPower = [&t](bool on) { t.On = on && !t.Dead; };
    links.Record = [&t](std::int32_t rate) {
      t.Deck.SetDecimator(1 << rate);
      t.Deck.OpenRecording();
    };
    links.Log = [&t](const std::string& line) { t.Lines.push_back(line); };
    return links;
  }
  TimerProgramme& Programme(const char* start, const char* end, TimerRepeat repeat = TimerRepeat::Once) {
    TimerProgramme programme{true, At(start), At(end), repeat, {}, 0};
    programme.Target.Freq = 72050000;
    return Timer.Programmes[0] = programme;
  }
  // Seconds of the radio: blocks come while it is on.
  void Live(int seconds) {
    for (int i = 0; i < seconds * 48000 / SamplesPerEvent; ++i) {
      if (On && Deck.PlayerMode() == 1) {
        Feed(1);
      } else {
        Queue.AdvanceBy(kBlock);
      }
    }
  }
  std::vector<std::string> Names() { return Storage.List("/music", ".wav"); }

  bool On = false, Dead = false;
  std::string TuneFault;
  std::vector<std::string> Lines;
  RecordingTimer Timer{Deck, {Storage, Worker, Queue, Boxes, Clock}, Links(*this)};
};

TEST_F(TimerTest, RecordsItsTimeToTheFirstFullHalfAndLeavesThePowerAsItWas) {
  Storage.Put("/music/2026-11-23 1801 7205 kHz.wav", "taken");
  Programme("2026-11-23 18:01:00", "2026-11-23 18:02:00");
  Live(50);
  EXPECT_FALSE(On);
  EXPECT_EQ(Timer.State(), "The timer records at 2026-11-23 18:01");
  Live(20);
  EXPECT_TRUE(On);
  EXPECT_EQ(Timer.State(), "The timer records until 2026-11-23 18:02");
  Live(70);
  EXPECT_FALSE(On);
  EXPECT_FALSE(Timer.Programmes[0].Active);
  const Recording recording = Read("/music/2026-11-23 1801 7205 kHz (2).wav");
  const double seconds = static_cast<double>(recording.Frames()) / 48000.0;
  EXPECT_GE(seconds, 59.0);
  EXPECT_LE(seconds, 60.0 + 4.0);
  EXPECT_EQ(recording.Log[0].Freq, 72050000);
  EXPECT_FALSE(Deck.IsUnsaved());
  EXPECT_EQ(Deck.RecordFileName, kSaved);
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(TimerTest, ARecordingByHandComesFirstAndTheRestIsRecorded) {
  On = true;
  Deck.OpenRecording();
  Programme("2026-11-23 18:00:10", "2026-11-23 18:02:00");
  Live(30);
  EXPECT_FALSE(Timer.Running());
  EXPECT_EQ(Deck.SamplesQueued / 48000, 29);
  Deck.StopPlayer();
  Deck.RecordFileName.clear();
  Deck.Save();  // no name chosen
  Tuned = 60000000;
  Live(110);
  EXPECT_EQ(Names(),
            (std::vector<std::string>{"2026-11-23 1800 7205 kHz (2).wav", "2026-11-23 1800 7205 kHz.wav"}));
  EXPECT_TRUE(On);
  EXPECT_EQ(Read("/music/2026-11-23 1800 7205 kHz.wav").Frames(), 10 * 131072);
}

TEST_F(TimerTest, ARecordingThatWasStoppedInAPauseHoldsNobodyUp) {
  On = true;
  Deck.OpenRecording();
  Live(5);
  Deck.Pause();
  Deck.StopPlayer();
  Programme("2026-11-23 18:00:10", "2026-11-23 18:01:00");
  Live(70);
  EXPECT_EQ(Names().size(), 2U);
}

TEST_F(TimerTest, DailyOnesTurnToTheirNextTime) {
  Programme("2026-11-20 23:00:00", "2026-11-21 01:00:00", TimerRepeat::Daily);
  Live(2);
  EXPECT_EQ(DateText(Timer.Programmes[0].Start), "2026-11-23 23:00:00");
  Programme("2026-11-10 17:59:00", "2026-11-10 18:00:30", TimerRepeat::Weekly);
  Live(60);
  EXPECT_EQ(DateText(Timer.Programmes[0].Start), "2026-11-24 17:59:00");
  EXPECT_TRUE(Timer.Programmes[0].Active);
}

TEST_F(TimerTest, WhatCantBeginIsToldOnceAndLeavesTheRadioAsItWas) {
  TuneFault = "there is no such preset";
  Programme("2026-11-23 18:00:05", "2026-11-23 18:01:00");
  Live(10);
  EXPECT_FALSE(On);
  EXPECT_EQ(Lines.back(), "The timer can't record: there is no such preset");
  TuneFault.clear();
  Dead = true;
  Programme("2026-11-23 18:00:05", "2026-11-23 18:01:00");
  Live(10);
  EXPECT_EQ(Lines.back(), "The timer can't record: the sound doesn't start");
  EXPECT_EQ(Lines.size(), 2U);
  EXPECT_TRUE(Names().empty());
}

TEST_F(TimerTest, WhoStopsItByHandTakesItOver) {
  Programme("2026-11-23 18:00:05", "2026-11-23 18:05:00", TimerRepeat::Daily);
  Live(20);
  ASSERT_TRUE(Timer.Running());
  Deck.StopPlayer();
  Live(5);
  EXPECT_FALSE(Timer.Running());
  EXPECT_TRUE(Deck.IsUnsaved());
  EXPECT_EQ(DateText(Timer.Programmes[0].Start), "2026-11-24 18:00:05");
}

TEST_F(TimerTest, ASoundThatStopsDoesNotKeepTheProgrammeOpen) {
  Programme("2026-11-23 18:00:05", "2026-11-23 18:00:20");
  Live(10);
  On = false;
  Live(80);
  EXPECT_FALSE(Timer.Running());
  EXPECT_EQ(Names().size(), 1U);
}

TEST(TimerProgramme, LinesReadBackAsTheyWereAndStrangeOnesAreNone) {
  std::mt19937 random(3);
  const auto number = [&random](unsigned most) { return static_cast<std::int32_t>(random() % (most + 1)); };
  for (int round = 0; round < 300; ++round) {
    TimerProgramme programme;
    programme.Active = number(1) == 1;
    programme.Start = At("2026-01-01 00:00:00") + number(1000);
    programme.End = programme.Start + 1.0 / 24.0 + number(3);
    programme.Start = At(DateText(programme.Start).c_str());
    programme.End = At(DateText(programme.End).c_str());
    programme.Repeat = static_cast<TimerRepeat>(number(2));
    programme.Rate = number(5);
    programme.Target = {number(1) == 1 ? "Night; and day" : "",
                        number(17),
                        number(11),
                        number(300000000),
                        number(5),
                        number(4)};
    EXPECT_EQ(ParseProgramme(ProgrammeText(programme)), programme);
    std::string damaged = ProgrammeText(programme);
    damaged.erase(static_cast<std::size_t>(number(static_cast<unsigned>(damaged.size()) - 1)));
    ParseProgramme(damaged);
  }
  for (const char* strange : {"", "True", "True;2026-01-01 00:00:00;2025-01-01 00:00:00;Once;0;10;0;0;0;0;",
                              "True;2026-01-01 00:00:00;2026-01-02 00:00:00;Hourly;0;10;0;0;0;0;",
                              "True;2026-01-01 00:00:00;2026-01-02 00:00:00;Once;9;10;0;0;0;0;"}) {
    EXPECT_FALSE(ParseProgramme(strange)) << strange;
  }
}

TEST(TimerProgramme, FaultsAreTold) {
  const double now = At("2026-11-23 18:00:00");
  TimerProgramme programme{true, now + 0.1, now + 0.2, TimerRepeat::Once, {}, 0};
  EXPECT_NE(ProgrammeFault(programme, now).find("frequency"), std::string::npos);
  programme.Target.Freq = 72050000;
  EXPECT_EQ(ProgrammeFault(programme, now), "");
  EXPECT_NE(ProgrammeFault(programme, now + 1.0), "");
  programme.Repeat = TimerRepeat::Daily;
  EXPECT_EQ(ProgrammeFault(programme, now + 1.0), "");
  programme.End += 2.0;
  EXPECT_NE(ProgrammeFault(programme, now), "");
}

}  // namespace
}  // namespace quorl::test
