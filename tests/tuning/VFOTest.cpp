#include "tuning/clsVFO.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

#include "TuningRig.h"
#include "tuning/TuningError.h"

namespace quorl {
namespace {

// Counts what it is told to send, and can let things happen meanwhile as a yielding transfer does.
class FakeOscillator : public Oscillator {
 public:
  FakeOscillator(SettingsStore& settings, Dialogs& dialogs) : Oscillator(settings, dialogs, "osc", 0) {
    SetClkIn(429496729.0);
    MaxFreq = 2000000000;
  }
  bool CanSend() const override { return true; }
  Failure Initialise() override { return {}; }
  void Refresh() override {}

  int Sends = 0;
  std::function<void()> WhileSending;

 private:
  void SendTuningWord(std::int32_t) override {
    ++Sends;
    if (WhileSending) WhileSending();
  }
};

class VFO : public ::testing::Test, protected TuningRig {
 protected:
  VFO() {
    vfo.Name = "VFO1.Test";
    vfo.OscType = oscillator;
  }

  std::shared_ptr<FakeOscillator> oscillator = std::make_shared<FakeOscillator>(Settings, Boxes);
  clsVFO vfo{Settings};
};

TEST_F(VFO, OscillatorFollowsSideIFCalibrationAndMultiplier) {
  struct {
    std::int32_t Tuned, IF, Calibration;
    bool HighSide;
    std::int32_t Multiplier, OscOut;
  } const cases[] = {
      {70500000, 45000000, 0, true, 1, 520500000},    {70500000, 45000000, 12, true, 1, 520500120},
      {70500000, 455000, 0, false, 1, 65950000},      {1000000, 455000, 0, false, 1, 3550000},
      {70500000, 45000000, -12, true, 2, 1040999760}, {70500000, 0, 0, true, -4, 282000000},
  };
  for (const auto& each : cases) {
    vfo.SetIFFrequency(each.IF);
    vfo.SetCalibOffset(each.Calibration);
    vfo.HiSideLO = each.HighSide;
    vfo.OscMultiplier = each.Multiplier;
    EXPECT_FALSE(vfo.SetTunedFrequency(each.Tuned));
    EXPECT_EQ(vfo.OscOut, each.OscOut);
  }
  EXPECT_EQ(oscillator->Sends, 6) << "whatever AutoUpdate says";
}

TEST_F(VFO, FoldsAndLimitsWithTheTwoUnitsOfItsTest) {
  vfo.SetTunedFrequency(-5000000);
  EXPECT_EQ(vfo.TunedFrequency(), 5000000);
  vfo.SetIFFrequency(45000000);
  // The test stands at 2000000000 - 45000000, the clamp at 2000000000 - 450000000.
  vfo.SetTunedFrequency(1955000000);
  EXPECT_EQ(vfo.TunedFrequency(), 1955000000);
  vfo.SetTunedFrequency(1955000001);
  EXPECT_EQ(vfo.TunedFrequency(), 1550000000);
  oscillator->MaxFreq = 250000000;
  vfo.SetTunedFrequency(300000000);
  EXPECT_EQ(vfo.TunedFrequency(), 300000000) << "with no room above the IF at all it is kept";
}

TEST_F(VFO, OverflowsAreToldAndLeaveThingsAsTheyWere) {
  const std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
  const int overflow = static_cast<int>(TuningError::Overflow);
  vfo.SetTunedFrequency(70500000);
  EXPECT_EQ(vfo.SetTunedFrequency(lowest)->Code, overflow);
  EXPECT_EQ(vfo.TunedFrequency(), 70500000);
  EXPECT_EQ(vfo.SetIFFrequency(214748365)->Code, overflow);
  EXPECT_EQ(vfo.SetCalibOffset(-300000000)->Code, overflow);
  EXPECT_EQ(vfo.IFFrequency(), 0);
  EXPECT_EQ(vfo.CalibOffset(), 0);

  vfo.OscMultiplier = 4;
  EXPECT_FALSE(vfo.SetTunedFrequency(600000000));
  EXPECT_EQ(vfo.TunedFrequency(), 600000000);
  EXPECT_EQ(vfo.OscOut, 70500000) << "four times 60 MHz in dHz needs 32 bits and a sign";
  EXPECT_EQ(oscillator->Sends, 2) << "and the old one is sent once more";
}

TEST_F(VFO, WithoutOscillatorItRecordsAndFails) {
  vfo.OscType.reset();
  EXPECT_EQ(vfo.SetTunedFrequency(-70500000)->Code, static_cast<int>(TuningError::ObjectNotSet));
  EXPECT_EQ(vfo.TunedFrequency(), 70500000);
  vfo.Refresh();
  EXPECT_EQ(vfo.OscOut, 70500000);
  vfo.SetTuneStep(1000);
  EXPECT_EQ(vfo.Inc_Freq(0), 70501000) << "stepping skips the error";
}

TEST_F(VFO, StepsSnapToTheGridFirst) {
  struct {
    double Step;
    std::int32_t From;
    double By;
    std::int32_t To;
  } const cases[] = {
      {25000, 70001, 0, 95000},                            // the grid stops at 10000
      {1000, 70499, 0, 71000},   {1000, 70500, 0, 72000},  // ties go up
      {1000, 70400, 250, 70250}, {1000, 70400, -70000, 0}, {1000, 1000, -3000, 2000},  // below 0 it folds
      {10, 70004, 0.5, 70000},   {10, 70004, 1.5, 70002},  // the sum rounds to even
  };
  for (const auto& each : cases) {
    vfo.SetTuneStep(each.Step);
    vfo.SetTunedFrequency(each.From);
    EXPECT_EQ(vfo.Inc_Freq(each.By), each.To) << each.From << " by " << each.By;
    EXPECT_EQ(vfo.TunedFrequency(), each.To);
  }
}

TEST_F(VFO, DecrementComesBackNegative) {
  vfo.SetTuneStep(1000);
  vfo.SetTunedFrequency(70000);
  double by = 500;
  EXPECT_EQ(vfo.Dec_Freq(by), 69500);
  EXPECT_EQ(by, -500);
  by = 0;
  EXPECT_EQ(vfo.Dec_Freq(by), 69000) << "69500 lies half-way and snaps up";
  EXPECT_EQ(by, -1000);
}

TEST_F(VFO, WithoutGridTheLastSnapStandsIn) {
  vfo.SetTuneStep(1000);
  vfo.SetTunedFrequency(70400);
  vfo.Inc_Freq(0);
  vfo.SetTuneStepLSD(0);
  vfo.SetTunedFrequency(99999);
  EXPECT_EQ(vfo.Inc_Freq(0), 71000);
  vfo.SetTuneStepLSD(1e-12);
  EXPECT_EQ(vfo.Inc_Freq(1e12), 71000) << "a sum beyond 32 bits is not set";
}

TEST_F(VFO, AutoUpdateIsDownWhileAStepIsSentAndBackAfterwards) {
  vfo.AutoUpdate = true;
  vfo.SetTuneStep(1000);
  std::vector<bool> seen;
  oscillator->WhileSending = [&] { seen.push_back(vfo.AutoUpdate); };
  vfo.Inc_Freq(0);
  EXPECT_EQ(seen, (std::vector<bool>{false, true})) << "a step is sent twice";
}

TEST_F(VFO, AFrequencySetDuringATransferIsLost) {
  vfo.SetTuneStep(1000);
  oscillator->WhileSending = [&] {
    EXPECT_FALSE(vfo.SetTunedFrequency(1));
    EXPECT_EQ(vfo.Inc_Freq(0), 70500000);
  };
  vfo.SetTunedFrequency(70500000);
  EXPECT_EQ(vfo.TunedFrequency(), 70500000);
  EXPECT_EQ(oscillator->Sends, 1);
}

TEST_F(VFO, LockedStepsStayButAreRestored) {
  vfo.SetTuneStep(1000);
  vfo.TuneStepLock = true;
  vfo.SetTuneStep(50);
  vfo.SetTuneStepLSD(50);
  EXPECT_EQ(vfo.TuneStep(), 1000);
  EXPECT_EQ(vfo.TuneStepLSD(), 1000);
  Settings.SaveSetting("VFO1.Test", "TuneStep", "2500");
  vfo.RestoreSettings();
  EXPECT_EQ(vfo.TuneStep(), 2500);
  EXPECT_EQ(vfo.TuneStepLSD(), 1000);
}

TEST_F(VFO, FormattedFrequencyShowsAndDoesNotTune) {
  vfo.SetTunedFrequency(70500000);
  EXPECT_EQ(vfo.FormattedTunedFreq(), "070500000");
  vfo.SetFormattedTunedFreq("123");
  EXPECT_EQ(vfo.TunedFrequency(), 70500000);
  vfo.SetTunedFrequency(1999999999);
  EXPECT_EQ(vfo.FormattedTunedFreq(), "1999999999");
}

TEST_F(VFO, SettingsMakeARoundTripButForTheCalibration) {
  {
    clsVFO first(Settings);
    first.Name = "VFO1.Round";
    first.SetIFFrequency(455000);
    first.HiSideLO = false;
    first.AutoUpdate = true;
    first.OscMultiplier = 4;
    first.SetCalibOffset(-125);
    first.SetTuneStep(24.5);
    first.DDSInterfaceType = 1;
    first.SaveSettings();
  }
  EXPECT_EQ(Settings.Serialise(),
            "[VFO1.Round]\nIFFrequency=455000\nHiSideLo=False\nAutoUpdate=True\nTunedFrequency=100000000\n"
            "TuneStep=25\nOscMultiplier=4\nCalibOffset=-125\nDDSInterfaceType=1\n");
  vfo.Name = "VFO1.Round";
  vfo.RestoreSettings();
  EXPECT_EQ(vfo.IFFrequency(), 455000);
  EXPECT_FALSE(vfo.HiSideLO);
  EXPECT_TRUE(vfo.AutoUpdate);
  EXPECT_EQ(vfo.OscMultiplier, 4);
  EXPECT_EQ(vfo.DDSInterfaceType, 1);
  EXPECT_EQ(vfo.CalibOffset(), -13) << "125 dHz, in whole hertz downwards";
  EXPECT_EQ(oscillator->Sends, 0);
}

TEST_F(VFO, BrokenSettingsLeaveWhatWasThere) {
  vfo.SetIFFrequency(45000000);
  for (const char* key : {"IFFrequency", "HiSideLo", "TunedFrequency", "TuneStep", "OscMultiplier"}) {
    Settings.SaveSetting("VFO1.Test", key, "rubbish");
  }
  Settings.SaveSetting("VFO1.Test", "CalibOffset", "99999999999");
  vfo.RestoreSettings();
  EXPECT_EQ(vfo.IFFrequency(), 45000000);
  EXPECT_TRUE(vfo.HiSideLO);
  EXPECT_EQ(vfo.TunedFrequency(), 100000000);
  EXPECT_EQ(vfo.OscMultiplier, 1);
  EXPECT_EQ(vfo.CalibOffset(), 0);
  Settings.SaveSetting("VFO1.Test", "IFFrequency", "300000000");
  Settings.SaveSetting("VFO1.Test", "TunedFrequency", "-70500000");
  vfo.RestoreSettings();
  EXPECT_EQ(vfo.IFFrequency(), 45000000);
  EXPECT_EQ(vfo.TunedFrequency(), 70500000);
}

}  // namespace
}  // namespace quorl
