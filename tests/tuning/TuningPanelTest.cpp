// The tuning panel by the names of its controls, with the real road to a simulated line and chip clock.
#include <gtest/gtest.h>

#include <optional>

#include "controls/ControlRegistry.h"
#include "controls/Hand.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualPrinterPort.h"
#include "platform/virtual/VirtualSerialPort.h"
#include "tuning/TuningChain.h"
#include "tuning/TuningPanel.h"

namespace quorl {
namespace {

constexpr Colour kNormal = 1, kFocus = 2, kTuning = 3, kLabel = 4, kLocked = 5;
// Status words in the order in which a turn up brings them.
constexpr std::array<std::uint32_t, 4> kUpwards{0x20, 0x10, 0x30, 0x00};

class TuningPanelTest : public testing::Test {
 protected:
  TuningPanelTest() {
    serial.SetRecording(false);
    store.SaveSetting("DDSAD9951", "ClkIn", "360096000");
    store.SaveSetting("VFO1.DRT1", "TunedFrequency", "72050000");
    chain.emplace(TuningMachine{serial, printer, queue, boxes, store}, SettingsStore::LogSink{});
    EXPECT_TRUE(chain->OpenInterface(InterfaceType::Serial, true));
    chain->CreateVFO(0, InterfaceType::Serial);
    TuningPanelLinks links;
    links.ActivateDisplay = [this] { active = true; };
    links.DisplayIsActive = [this] { return active; };
    links.ShowOscillator = [this](const std::string& text) { oscillator = text; };
    links.SetLowSideLO = [this](bool low) { vars.LowSideLO = low; };
    links.StoreTuneStep = [this](std::int32_t dHz) { storedStep = dHz; };
    panel.emplace(registry, queue, clock, vars, links);
    panel->SetTuner(&chain->Tune());
    panel->SetEncoder(&chain->SerialIF());
    panel->SetColours({kNormal, kFocus, kLabel, kTuning, kLocked});
    panel->FillTuningSteps();
    panel->tmrTune.SetInterval(50);
    panel->tmrTune.SetEnabled(true);
    panel->tmrShaft.SetInterval(30);
    panel->tmrShaft.SetEnabled(true);
  }
  ~TuningPanelTest() override { panel.reset(); }

  clsVFO& VFO() { return *chain->VFO(); }
  Control& At(const std::string& name) {
    Control* control = registry.Find(name);
    if (control == nullptr) throw std::out_of_range(name);
    return *control;
  }
  void Hover(int digit) { At(IndexedName("lbl7Seg", digit)).MouseMove({}); }
  void Hold(int code, int times = 1) {
    for (int i = 0; i < times; ++i) {
      At("picFreqDisp").KeyDown(Key{code, {}});
      Run(50);
    }
    At("picFreqDisp").KeyUp(Key{code, {}});
  }
  void Run(int time) { queue.AdvanceBy(std::chrono::milliseconds(time)); }
  std::string Digits() {
    Run(60);
    return Shown();
  }
  std::string Shown() {
    std::string digits;
    for (int i = 0; i < TuningPanel::kDigits; ++i) digits += At(IndexedName("lbl7Seg", i)).Text();
    return digits;
  }
  int Highlighted() {
    int found = -1;
    for (int i = 0; i < TuningPanel::kDigits; ++i) {
      if (At(IndexedName("lbl7Seg", i)).ForeColour() == kFocus) found = found == -1 ? i : 99;
    }
    return found;
  }

  VirtualClock clock;
  VirtualEventQueue queue{clock};
  VirtualDialogs boxes;
  VirtualSerialPort serial{clock, queue};
  VirtualPrinterPort printer{clock};
  SettingsStore store;
  ControlRegistry registry;
  PublicVars vars;
  std::optional<TuningChain> chain;
  std::optional<TuningPanel> panel;
  bool active = false;
  std::string oscillator;
  std::int32_t storedStep = 0;
};

TEST_F(TuningPanelTest, StartsWithTheStepOfTheVFO) {
  EXPECT_EQ(Highlighted(), 5);
  EXPECT_EQ(At("lblTuningRate").Text(), "100 Hz");
  EXPECT_EQ(Digits(), "072050000");
  active = true;
  Hold(Key::Up);
  EXPECT_EQ(Digits(), "072051000");
}

TEST_F(TuningPanelTest, ADigitUnderThePointerIsTheStep) {
  const std::array<const char*, 9> texts{"10 MHz", "1 MHz", "100 KHz", "10 KHz", "1 KHz",
                                         "100 Hz", "10 Hz", "1 Hz",    "1 dHz"};
  const std::array<const char*, 9> up{"172050000", "082050000", "073050000", "072150000", "072060000",
                                      "072051000", "072050100", "072050010", "072050001"};
  for (int digit = 0; digit < 9; ++digit) {
    VFO().SetTunedFrequency(72050000);
    Hover(digit);
    EXPECT_TRUE(active);
    EXPECT_EQ(Highlighted(), digit);
    EXPECT_EQ(At("lblTuningRate").Text(), texts[static_cast<std::size_t>(digit)]);
    At(IndexedName("lbl7Seg", digit)).Wheel(1, {});
    EXPECT_EQ(Digits(), up[static_cast<std::size_t>(digit)]);
    EXPECT_EQ(At("lblTuneDialRate").Text(), texts[static_cast<std::size_t>(digit)]);
    Hold(Key::Z);
    EXPECT_EQ(Digits(), "072050000");
  }
  Hover(6);
  At("lbl7Seg(6)").Wheel(-3, {});
  EXPECT_EQ(Digits(), "072049700");
  EXPECT_LE(VFO().TuneStepLSD(), 10000.0);
}

TEST_F(TuningPanelTest, HeldKeysTuneOncePerTickAndTurnTheDialAlong) {
  Hover(4);
  const int dial = panel->dialtuner.Value();
  Hold(Key::A, 3);
  EXPECT_EQ(Digits(), "072080000");
  EXPECT_EQ(panel->dialtuner.Value(), dial + 3);
  Hold(Key::Down, 2);
  EXPECT_EQ(panel->dialtuner.Value(), dial + 1);
  EXPECT_EQ(Digits(), "072060000");
  Run(500);
  EXPECT_EQ(Digits(), "072060000");  // let go
  Hold(Key::Right);
  EXPECT_EQ(Highlighted(), 5);
  for (int i = 0; i < 4; ++i) Hold(Key::Right);
  EXPECT_EQ(Highlighted(), 0);
  Hold(Key::Left);
  EXPECT_EQ(Highlighted(), 8);
  Hold(Key::Up);
  EXPECT_EQ(Digits(), "072060001");
  active = false;  // the keys belong to another control
  Hold(Key::Up);
  EXPECT_EQ(Digits(), "072060001");
  At("picFreqDisp").KeyDown(Key{Key::Left, {}});
  EXPECT_EQ(Highlighted(), 8);
}

TEST_F(TuningPanelTest, TheDialTunesWhereTheRateIsLockedAndSnapsWhereItIsNot) {
  VFO().SetTunedFrequency(72051234);
  Hover(4);
  panel->dialtuner.SetValue(1);
  EXPECT_EQ(Digits(), "072050000");
  panel->dialtuner.SetValue(20);
  EXPECT_EQ(Digits(), "072050000");
  EXPECT_TRUE(panel->dialtuner.Faded());
  EXPECT_EQ(panel->dialtuner.AccessibleName(), "Tuning dial, held");
  At("lblTuningRate").UserClick();
  EXPECT_FALSE(panel->dialtuner.Faded());
  EXPECT_EQ(panel->dialtuner.ToolTip(), "Tunes by 1 KHz");
  EXPECT_EQ(At("lblTuningRate").ForeColour(), kLocked);
  EXPECT_EQ(At("lblTuningRate").ToolTip(), "Click to Unlock Tuning Rate");
  panel->dialtuner.SetValue(21);
  EXPECT_EQ(Digits(), "072060000");
  panel->dialtuner.SetValue(10);
  EXPECT_EQ(Digits(), "072050000");
  Hold(Key::Up, 2);  // turns the knob, and only once
  EXPECT_EQ(Digits(), "072070000");
  panel->dialtuner.SetValue(panel->dialtuner.Value() - 1);
  EXPECT_EQ(Digits(), "072060000");
  At("lblTuningRate").UserClick();
  EXPECT_EQ(At("lblTuningRate").ForeColour(), kFocus);
  EXPECT_EQ(At("lblTuningRate").ToolTip(), "Click to Lock Tuning Rate");
}

TEST_F(TuningPanelTest, LocksHoldTheStepUntilTheyAreReleased) {
  Hover(4);
  At("lblTuningRate").UserClick();
  Hover(2);
  EXPECT_EQ(Highlighted(), 4);
  At("lblTuningRate").UserClick();

  At("lbl7Seg(4)").UserClick();
  EXPECT_TRUE(At("imgTuneStepLock").Visible());
  EXPECT_TRUE(VFO().TuneStepLock);
  EXPECT_EQ(At("lblTuningRate").ForeColour(), kLocked);
  Hover(2);
  EXPECT_EQ(VFO().TuneStep(), 10000.0);
  At("lbl7Seg(6)").DblClick({});  // another digit takes the lock over
  EXPECT_EQ(VFO().TuneStep(), 100.0);
  EXPECT_EQ(Highlighted(), 6);
  At("lbl7Seg(6)").Wheel(1, {});
  EXPECT_EQ(Digits(), "072050100");
  const auto tipOf = [this](int digit) { return At(IndexedName("lbl7Seg", digit)).ToolTip().substr(0, 32); };
  EXPECT_EQ(tipOf(4), "Wheel tunes by 10 Hz, the locked");
  At("imgTuneStepLock").UserClick();
  EXPECT_EQ(tipOf(4), "Wheel tunes by 1 KHz, Click to L");
  At("lblTuningRate").UserClick();
  EXPECT_EQ(tipOf(4), "Wheel tunes by 10 Hz, the locked");
  At("lblTuningRate").UserClick();
  EXPECT_FALSE(At("imgTuneStepLock").Visible());
  EXPECT_FALSE(panel->TuningRateLocked);
  EXPECT_EQ(At("lblTuningRate").ForeColour(), kFocus);
  EXPECT_EQ(At("lblTuningRate").ToolTip(), "Click to Lock Tuning Rate");
  Hover(3);
  EXPECT_EQ(VFO().TuneStep(), 100000.0);
}

TEST_F(TuningPanelTest, TheMenuOfADigitLocksUnlocksAndOpensTheSelector) {
  int opened = 0;
  panel->mnuVFOControlSub.OnPopup = [&] { ++opened; };
  At("lbl7Seg(5)").MouseDown({.Button = MouseButton::Left});
  EXPECT_EQ(opened, 0);
  At("lbl7Seg(5)").MouseDown({.Button = MouseButton::Right});
  EXPECT_EQ(opened, 1);
  ASSERT_TRUE(At("mnuVFOControlSub").UserSet("Lock Tune Rate"));
  EXPECT_EQ(VFO().TuneStep(), 1000.0);
  EXPECT_TRUE(VFO().TuneStepLock && panel->TuningRateLocked && At("imgTuneStepLock").Visible());
  ASSERT_TRUE(At("mnuVFOControlSub").UserSet("Cancel"));
  EXPECT_TRUE(At("imgTuneStepLock").Visible());
  ASSERT_TRUE(At("mnuVFOControlSub").UserSet("Unlock Tune rate"));
  EXPECT_FALSE(VFO().TuneStepLock || panel->TuningRateLocked || At("imgTuneStepLock").Visible());
  ASSERT_TRUE(At("mnuVFOControlSub").UserSet("Set Tuning Rate"));
  EXPECT_TRUE(At("cboTuningSteps").Visible());
  EXPECT_EQ(panel->cboTuningSteps.Beside(), &At("lbl7Seg(5)"));
  At("cboTuningSteps").KeyDown(Key{Key::Escape, {}});
  EXPECT_FALSE(At("cboTuningSteps").Visible());
}

TEST_F(TuningPanelTest, TheSelectorTakesEveryStepAndOverridesALock) {
  struct Step {
    const char* Item;
    const char* Rate;
    int Digit;
  };
  for (const Step& step :
       {Step{"10 KHz", "10 KHz", 4}, Step{"9 KHz", "9 KHz", 4}, Step{"2.5 KHz", "2.5 KHz", 4},
        Step{"500 Hz", "500 Hz", 5}, Step{"25 Hz", "25 Hz", 6}, Step{"2.5 Hz", "2.5 Hz", 7},
        Step{"5 dHz", "5 dHz", 8}, Step{"1 dHz", "1 dHz", 8}}) {
    At("lblTuneDialRate").MouseDown({.Button = MouseButton::Right});
    ASSERT_TRUE(At("cboTuningSteps").UserSet(step.Item)) << step.Item;
    EXPECT_EQ(At("lblTuningRate").Text(), step.Rate);
    EXPECT_EQ(Highlighted(), step.Digit);
    EXPECT_EQ(VFO().TuneStep(), storedStep);
    EXPECT_TRUE(VFO().TuneStepLock && At("imgTuneStepLock").Visible());
    VFO().SetTunedFrequency(72000000);
    At("lbl7Seg(3)").Wheel(1, {});
    EXPECT_EQ(VFO().TunedFrequency(), 72000000 + storedStep) << step.Item;
  }
  EXPECT_EQ(At("lbl7Seg(3)").ToolTip(), "Wheel tunes by 1 dHz, the locked step, Right Click for more");
  At("lblTuningRate").MouseDown({.Button = MouseButton::Right});
  EXPECT_EQ(panel->cboTuningSteps.Marked(), 16);
  EXPECT_EQ(panel->cboTuningSteps.ListIndex(), -1);
  // The same one again, after the digits have been gone over.
  At("imgTuneStepLock").DblClick({});
  EXPECT_EQ(At("lbl7Seg(3)").ToolTip(),
            "Wheel tunes by 10 KHz, Click to Lock Tune Rate, Right Click for more");
  Hover(3);
  At("lblTuningRate").MouseDown({.Button = MouseButton::Right});
  ASSERT_TRUE(At("cboTuningSteps").UserSet("1 dHz"));
  EXPECT_EQ(VFO().TuneStep(), 1.0);

  ASSERT_TRUE(At("mnuVFOStepSub").UserSet("9 KHz"));
  EXPECT_EQ(VFO().TuneStep(), 1.0);  // locked, and no override
  panel->SetTuningRate(panel->TuneStepIndex + 1, true);
  EXPECT_EQ(VFO().TuneStep(), 100000.0);  // round from the last to the first
  panel->SetTuningRate(-1, true);
  EXPECT_EQ(VFO().TuneStep(), 1.0);
}

TEST_F(TuningPanelTest, DisplayAddsTheBFOAndTheLowSideRetunes) {
  VFO().Refresh();
  vars.BFOOffset = -1500;
  EXPECT_EQ(Digits(), "072035000");
  EXPECT_EQ(oscillator, "52 205 000 Hz");
  vars.BFOOffset = 0;
  ASSERT_TRUE(At("chkTuneLo").UserSet("1"));
  EXPECT_TRUE(vars.LowSideLO);
  EXPECT_FALSE(VFO().HiSideLO);
  EXPECT_EQ(VFO().OscOut, 377950000);
  EXPECT_EQ(At("chkTuneLo").ForeColour(), kTuning);
  ASSERT_TRUE(At("chkTuneLo").UserSet("0"));
  EXPECT_FALSE(vars.LowSideLO);
  EXPECT_EQ(VFO().OscOut, 522050000);
  EXPECT_EQ(At("chkTuneLo").ForeColour(), kLabel);
}

TEST_F(TuningPanelTest, TheEncoderStepsWhereItIsEnabled) {
  Hover(4);
  const auto turn = [&](std::uint32_t status) {
    serial.SetStatus(status);
    Run(10);
  };
  const int dial = panel->dialtuner.Value();
  for (const std::uint32_t status : kUpwards) turn(status);
  EXPECT_EQ(Digits(), "072050000");
  panel->ShaftEnabled = true;
  for (const std::uint32_t status : kUpwards) turn(status);
  EXPECT_EQ(Digits(), "072090000");
  EXPECT_EQ(panel->dialtuner.Value(), dial + 4);
  turn(0x30);
  turn(0x10);
  EXPECT_EQ(Digits(), "072070000");
  EXPECT_EQ(panel->dialtuner.Value(), dial + 2);
  turn(0x00);  // both lines at once: no step
  EXPECT_EQ(Digits(), "072070000");
}

TEST_F(TuningPanelTest, TheEncodersSpeedPicksTheStepAndATimerTakesIt) {
  VFO().SetTunedFrequency(72051234);
  panel->ShaftEnabled = panel->ShaftAutoRateOn = true;
  Hover(4);
  serial.SetStatus(kUpwards[0]);
  Run(1);
  EXPECT_EQ(VFO().TuneStep(), 0.001 / 1000);  // the first after a pause is slow
  EXPECT_EQ(VFO().TunedFrequency(), 72051234);
  for (std::size_t i = 1; i < 8; ++i) {
    serial.SetStatus(kUpwards[i % 4]);
    Run(1);
  }
  EXPECT_EQ(VFO().TuneStep(), 0.001 / 2);
  EXPECT_TRUE(panel->tmrShaft.Enabled());
  Run(70);
  EXPECT_FALSE(panel->tmrShaft.Enabled());      // rests with the encoder
  EXPECT_EQ(VFO().TunedFrequency(), 72051234);  // its steps lie below the grid of the frequency
}

TEST_F(TuningPanelTest, ABatchOfTheEncoderIsOneStepTheWayItTurnedLast) {
  panel->ShaftEnabled = panel->ShaftAutoRateOn = true;
  Hover(4);
  Run(100);
  const auto turn = [&](std::initializer_list<std::uint32_t> states) {
    for (const std::uint32_t status : states) {
      serial.SetStatus(status);
      Run(1);
    }
    VFO().SetTuneStep(10000.0);  // coarse enough to be seen
  };
  turn({kUpwards[0], kUpwards[1], kUpwards[2]});
  Run(26);
  EXPECT_EQ(VFO().TunedFrequency(), 72050000);  // waits for the beat of 30 ms
  Run(2);
  EXPECT_EQ(VFO().TunedFrequency(), 72060000);
  Run(30);
  EXPECT_EQ(VFO().TunedFrequency(), 72060000);  // once
  turn({kUpwards[3], kUpwards[2], kUpwards[1]});
  Run(40);
  EXPECT_EQ(VFO().TunedFrequency(), 72050000);
}

TEST_F(TuningPanelTest, TheChipIsRefreshedNowAndThenWhereThatIsWanted) {
  serial.SetRecording(true);
  panel->tmrTune.SetEnabled(false);
  panel->tmrShaft.SetEnabled(false);
  panel->tmrVFOUpdate.SetInterval(1000);
  panel->tmrVFOUpdate.SetEnabled(true);
  int refreshes = 0;
  std::int64_t last = clock.Microseconds(), shortest = 1000000000;
  for (int i = 0; i < 600; ++i) {
    serial.ClearLevels();
    Run(100);
    if (serial.Levels().empty()) continue;
    if (refreshes++ > 0) shortest = std::min(shortest, clock.Microseconds() - last);
    last = clock.Microseconds();
  }
  EXPECT_GE(refreshes, 20);
  EXPECT_LE(refreshes, 40);
  EXPECT_GE(shortest, 1400000);
  VFO().AutoUpdate = false;
  serial.ClearLevels();
  Run(10000);
  EXPECT_TRUE(serial.Levels().empty());
}

TEST_F(TuningPanelTest, AShortTapIsAStepAndDigitsShowAtOnce) {
  Hover(5);
  for (int i = 0; i < 20; ++i) {
    At("picFreqDisp").KeyDown({i % 2 == 0 ? Key::A : Key::Up, {}});
    EXPECT_EQ(Shown(), "0720" + std::to_string(51 + i) + "000");
    Run(10);
    At("picFreqDisp").KeyUp({i % 2 == 0 ? Key::A : Key::Up, {}});
    Run(7);
  }
  EXPECT_EQ(Digits(), "072070000");
  // Nobody told that this one was let go, as where the window lost the keyboard.
  At("picFreqDisp").KeyDown({Key::Z, {}});
  Run(2000);
  At("picFreqDisp").KeyDown({Key::Z, {}});
  At("picFreqDisp").KeyUp({Key::Z, {}});
  EXPECT_EQ(Digits(), "072068000");
}

TEST_F(TuningPanelTest, NotchesOfWheelKeysDialAndEncoderAddUpWhileAFrameIsOut) {
  Hover(4);
  At("lblTuningRate").UserClick();
  panel->ShaftEnabled = true;
  serial.SetLineTime(std::chrono::milliseconds(1));
  queue.Post([&] {
    At("lbl7Seg(4)").Wheel(2, {});
    panel->dialtuner.SetValue(panel->dialtuner.Value() + 1);
    At("picFreqDisp").KeyDown({Key::Up, {}});
    serial.SetStatus(kUpwards[0]);
  });
  At("lbl7Seg(4)").Wheel(1, {});
  Run(1000);
  EXPECT_EQ(VFO().TunedFrequency(), 72050000 + 6 * 10000);
}

TEST_F(TuningPanelTest, PageKeysTuneByTheStepByTenAndByATenth) {
  Hover(5);
  const auto page = [&](int code, Modifiers with = {}) { EXPECT_TRUE(panel->TuneByKey({code, with})); };
  page(Key::PageUp);
  EXPECT_EQ(Digits(), "072051000");
  page(Key::PageDown, {.Shift = true});
  EXPECT_EQ(Digits(), "072041000");
  page(Key::PageUp, {.Ctrl = true});
  EXPECT_EQ(Digits(), "072041100");
  Hover(8);
  page(Key::PageDown, {.Ctrl = true});
  EXPECT_EQ(Digits(), "072041099");
  EXPECT_FALSE(panel->TuneByKey({Key::Up, {}}));
}

TEST_F(TuningPanelTest, TheTenthDigitShowsAndTheEndOfTheReachIsTold) {
  chain->Tune().MoveTo(1072050000);
  EXPECT_EQ(At("lbl7SegTop").Text() + Digits(), "1072050000");
  EXPECT_EQ(oscillator, "152 205 000 Hz");
  EXPECT_TRUE(At("lbl7SegTop").Visible());
  Hover(0);
  At("lbl7Seg(0)").Wheel(9, {});
  EXPECT_EQ(At("lbl7SegTop").Text() + Digits(), "1350479999");
  EXPECT_EQ(At("lblTuningLimit").Text(), "135,048.0 kHz is as far as DDS clock and IF go");
  EXPECT_TRUE(At("lblTuningLimit").Visible());
  At("lbl7Seg(0)").Wheel(-4, {});
  EXPECT_FALSE(At("lblTuningLimit").Visible());
  EXPECT_EQ(Digits(), "950480000");
  EXPECT_FALSE(At("lbl7SegTop").Visible());
}

TEST_F(TuningPanelTest, AClickOnTheHighlightedDigitReplacesALockedStepOfAnother) {
  At("lblTuningRate").MouseDown({.Button = MouseButton::Right});
  EXPECT_TRUE(At("cboTuningSteps").UserSet("9 KHz"));
  EXPECT_EQ(VFO().TuneStep(), 90000);
  active = true;
  for (int i = 0; i < 2; ++i) At("picFreqDisp").KeyDown({Key::Right, {}});
  EXPECT_EQ(VFO().TuneStep(), 90000);  // locked, whatever is highlighted
  At("lbl7Seg(6)").UserClick();
  EXPECT_EQ(VFO().TuneStep(), 100);
  EXPECT_TRUE(VFO().TuneStepLock);
}

TEST_F(TuningPanelTest, WithoutAVFONothingHappens) {
  panel->SetTuner(nullptr);
  panel->ShaftEnabled = true;
  for (Control* control : registry.All()) {
    hand::Click(*control, {.Button = MouseButton::Right});
    hand::Click(*control);
    hand::DoubleClick(*control);
    control->Wheel(1, {});
    control->KeyDown(Key{Key::Up, {}});
    control->UserSet("3");
  }
  serial.SetStatus(0x20);
  Run(3000);
  EXPECT_EQ(VFO().TunedFrequency(), 72050000);
}

}  // namespace
}  // namespace quorl
