// Band plans between files and records: what the reader takes from a file, what a save leaves of it.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "memories/PlanFormat.h"
#include "memories/modBandPlan.h"
#include "platform/files/GrowingFile.h"
#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "profile/ProfileText.h"
#include "support/TextEncoding.h"

namespace quorl {
namespace {

constexpr char kPath[] = "plans/Test.bpl";

std::string Lines(const std::string& text) {
  std::string lines;
  for (const char c : text) lines += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return lines;
}

struct PlanFiles : testing::Test {
  VirtualClock Clock;
  VirtualEventQueue Queue{Clock};
  VirtualDialogs Boxes;
  VirtualFiles Storage;
  VirtualFileWorker Worker{Queue};
  modBandPlan Plans{Storage, Worker, Queue, Boxes, Clock};
  std::int32_t Current = -5;

  BandPlan Fresh() {
    BandPlan plan;
    plan.Name = plan.Caption = plan.Description = "Test";
    plan.FileName = kPath;
    Plans.CreateBandPlanRecords(plan);
    return plan;
  }
  BandPlan Load(const std::string& content) {
    Storage.Put(kPath, content);
    BandPlan plan = Fresh();
    EXPECT_TRUE(Plans.LoadBandPlan(plan, Current));
    return plan;
  }
  std::string Stored() {
    Failure failure;
    return Storage.Read(kPath, failure).value_or("(none)");
  }
};

TEST_F(PlanFiles, TheFirstFittingLineOfTheFirstFittingSectionCounts) {
  const BandPlan plan = Load(Lines(
      "[mainband] of my own\nActiveSubBand=1\nx Active=False\n Active = True\nActive=False\nCaption\n"
      "Caption== a = b \n [SubBand.0]\nFreqMin=1\n[SubBand.10]\nFreqMin=10\n[subband.1]\nCaption=Seventeen\n"
      "FreqMin=1000\n[SubBand.1]\nFreqMax=2000\n[Preset.1.0]\nCaption=Gr\xC3\xBC\xC3\x9F"
      "e123\nFreqCurrent=77\n"
      "[Preset.1.12]\nFreqCurrent=5\n[SubBand.2]\nFreqMax=5"));
  EXPECT_FALSE(plan.Active) << "only \"Active=\" in the first column is that key";
  EXPECT_EQ(plan.ActiveSubBand, 1);
  EXPECT_EQ(plan.Caption, "= a = b");
  EXPECT_FALSE(plan.SubBands[0].Used) << "a blank before the bracket hides a section";
  EXPECT_EQ(plan.SubBands[1].Caption, "Sevent");
  EXPECT_EQ(plan.SubBands[1].FreqMin, 1000) << "not those of section 10";
  EXPECT_EQ(plan.SubBands[1].FreqMax, kNotSet) << "not of its second coming";
  EXPECT_EQ(plan.SubBands[1].Presets[0].Caption,
            "Gr\xC3\xBC\xC3\x9F"
            "e12")
      << "cut between characters";
  EXPECT_EQ(plan.SubBands[1].Presets[12].Settings.FreqCurrent, 5);
  EXPECT_FALSE(plan.SubBands[2].Used) << "the last line has no end";
  EXPECT_EQ(plan.SubBands[10].FreqMin, 10);
  EXPECT_EQ(Current, -5);
}

TEST_F(PlanFiles, ABadNumberEndsItsBlockAndNothingElse) {
  const BandPlan plan = Load(
      Lines("[MainBand]\nActive=-1\nActiveSubBand=44\nNumSubBands=99\n"
            "[SubBand.0]\nFreqMin=abc\nFreqMax=300000000\nActivePreset=x\nFreqCurrent=7050000\nTuneStep="
            "what\nFilterHi=3000\n"
            "[SubBand.18]\nFreqMin=0\nNotchFilterWidth=13000\nAGCOn=perhaps\nIFFilterLo=\n"
            "[Preset.0.0]\nCaption=A\nDescription=B\nFreqCurrent=214748365\nDemodMode=2\n"
            "[Preset.0.1]\nFreqCurrent=214748364\nNotchFilterWidth=12999\nLowSideLO=1\nAGCAttack=12.5\n"));
  EXPECT_TRUE(plan.Active);
  EXPECT_EQ(Current, plan.Index);
  EXPECT_EQ(plan.ActiveSubBand, 17);
  EXPECT_EQ(plan.NumSubBands, 18);
  const SubBand& band = plan.SubBands[0];
  EXPECT_EQ(band.FreqMin, kNotSet);
  EXPECT_EQ(band.FreqMax, kNotSet);
  EXPECT_EQ(band.ActivePreset, kNotSet);
  EXPECT_TRUE(band.Used);
  EXPECT_EQ(band.Settings.FreqCurrent, 7050000);
  EXPECT_EQ(band.Settings.FilterHi, 0) << "behind the bad TuneStep";
  EXPECT_EQ(plan.SubBands[18].Settings.NotchFilterWidth, 0) << "behind the empty IFFilterLo";
  EXPECT_EQ(band.Presets[0].Description, "B");
  EXPECT_EQ(band.Presets[0].Settings.DemodMode, 2);
  EXPECT_EQ(band.Presets[0].Settings.FreqCurrent, kNotSet);
  const TuningSettings& sound = band.Presets[1].Settings;
  EXPECT_EQ(sound.FreqCurrent, 214748364);
  EXPECT_EQ(sound.NotchFilterWidth, 12999);
  EXPECT_TRUE(sound.LowSideLO && sound.HasLowSideLO && sound.AGCOn);
  EXPECT_FALSE(sound.HasOutputAttenuation);
  EXPECT_EQ(sound.AGCAttack, 12.5F);
  EXPECT_EQ(sound.FilterHi, -1);
  EXPECT_EQ(sound.TuneStep, 1000);
}

// Any plan that the program can make comes back as it was, but for what is not stored.
TEST_F(PlanFiles, PlansMadeHereReadBackTheSame) {
  std::mt19937 random(7);
  const auto upTo = [&random](std::int32_t most) {
    return std::int32_t(random() % (std::uint32_t(most) + 1));
  };
  const auto shake = [&](TuningSettings& block) {
    block = {.Changed = true,
             .FreqCurrent = 1 + upTo(30000000),
             .LowSideLO = upTo(1) == 1,
             .TuneStep = upTo(100000),
             .FilterMode = upTo(4),
             .FilterHi = upTo(5000) - 1,
             .FilterLo = upTo(300) - 1,
             .MusicModeActive = upTo(1) == 1,
             .DynFilterActive = upTo(1) == 1,
             .IFFilterActive = upTo(1) == 1,
             .IFFilterMode = upTo(2),
             .IFFilterLo = upTo(6000),
             .IFFilterHi = upTo(6000),
             .AGCAttack = float(upTo(1000)) / 8,
             .AGCDecay = float(upTo(2000)) / 3,
             .AGCOn = upTo(1) == 1,
             .AGCMode = upTo(4),
             .NotchActive = upTo(1) == 1,
             .NotchMode = upTo(1),
             .NotchType = upTo(1),
             .NotchFilterCenter = upTo(6000),
             .NotchFilterWidth = upTo(12999),
             .NotchMirror = upTo(1) == 1,
             .DemodMode = upTo(5),
             .OutputAttenuation = float(upTo(10000)) - 8000,
             .HasLowSideLO = true,
             .HasOutputAttenuation = true};
  };
  for (int round = 0; round < 30; ++round) {
    Storage.Put(kPath, "");
    BandPlan plan = Fresh();
    plan.Loaded = true;
    plan.Description = "\xE2\x82\xAC and = [x] ";
    plan.Description.pop_back();
    plan.ActiveSubBand = upTo(17);
    for (std::int32_t n = 0; n <= plan.NumSubBands; ++n) {
      SubBand& band = plan.SubBands[std::size_t(n)];
      if (upTo(2) == 0) continue;
      band.FreqMin = upTo(1000000);
      band.FreqMax = band.FreqMin + upTo(1000000);
      band.ActivePreset = upTo(12) - 1;
      band.Used = true;
      shake(band.Settings);
      for (std::int32_t p = 0; p < 12; ++p) {
        Preset& preset = band.Presets[std::size_t(p)];
        if (upTo(1) == 0) continue;
        preset.Caption = "P\xC3\xA4" + std::to_string(upTo(9999));
        preset.Active = p == band.ActivePreset;
        shake(preset.Settings);
      }
    }
    Plans.SaveBandPlan(plan);
    Plans.Finish();
    BandPlan read = Fresh();
    ASSERT_TRUE(Plans.LoadBandPlan(read, Current));
    const auto normalise = [](BandPlan& each) {
      for (SubBand& band : each.SubBands) {
        const auto forget = [](TuningSettings& block) {
          const bool set = block.Changed || block.FreqCurrent > 0;
          block.Changed = false;
          if (!set) block = {.FreqCurrent = block.FreqCurrent};
        };
        forget(band.Settings);
        for (Preset& preset : band.Presets) forget(preset.Settings);
      }
    };
    normalise(plan);
    normalise(read);
    ASSERT_EQ(plan, read) << round;
  }
}

TEST_F(PlanFiles, ASaveChangesWhatIsNewAndLeavesTheRest) {
  const std::string before = Lines(
      "; mine\n[MainBand]\nCaption=Old\ncolour = green\n\n[SubBand.0]\nFreqMin=5\nDemodMode=2\n[Other]\nx=1\n"
      "[Preset.0.3]\nFreqCurrent=9\n[Preset.0.12]\nFreqCurrent=8\n");
  BandPlan plan = Load(before);
  plan.SubBands[0].Settings.DemodMode = 1;  // changed by a hand, but never captured
  plan.SubBands[0].Presets[3].Settings.FreqCurrent = 0;
  plan.SubBands[0].Presets[12].Settings.Changed = true;
  plan.Description = "new";
  Plans.SaveBandPlan(plan);
  EXPECT_EQ(Stored(), before) << "beside the main thread";
  Plans.Finish();
  const std::string after = Stored();
  EXPECT_EQ(after.find("; mine\r\n[MainBand]\r\nCaption=Old\r\ncolour = green\r\nIndex=0\r\n"), 0U) << after;
  EXPECT_NE(after.find("NumSubBands=17\r\n\r\n[SubBand.0]\r\nFreqMin=5\r\nDemodMode=2\r\nIndex=0\r\n"),
            std::string::npos);
  EXPECT_NE(after.find("[Preset.0.3]\r\nFreqCurrent=9\r\n"), std::string::npos)
      << "a cleared preset stays in the file";
  EXPECT_EQ(after.find("TuneStep"), std::string::npos);
  EXPECT_NE(after.find("[Preset.0.12]\r\nFreqCurrent=8\r\n"), std::string::npos);
  EXPECT_EQ(after.find("Caption=P13"), std::string::npos) << "the thirteenth is read, never written";
  EXPECT_FALSE(Plans.BandPlanFileBusy || Plans.BandPlanLoading);
}

TEST_F(PlanFiles, AFileKeepsItsEncodingUntilACharacterNeedsMore) {
  BandPlan plan = Load(Lines("[MainBand]\nCaption=M\xFCnchen\n"));
  EXPECT_EQ(plan.Caption, "M\xC3\xBCnchen");
  plan.Description = "\xE2\x82\xAC";
  Plans.SaveBandPlan(plan);
  Plans.Finish();
  EXPECT_NE(Stored().find("Caption=M\xFCnchen\r\n"), std::string::npos);
  EXPECT_NE(Stored().find("Description=\x80\r\n"), std::string::npos);
  plan.Description = "\xCE\xA9";
  Plans.SaveBandPlan(plan);
  Plans.Finish();
  EXPECT_NE(Stored().find("Caption=M\xC3\xBCnchen\r\n"), std::string::npos);
  EXPECT_NE(Stored().find("Description=\xCE\xA9\r\n"), std::string::npos);
}

TEST_F(PlanFiles, AFileThatHidesItsLinesIsMendedOnlyWhenTheUserWantsIt) {
  const std::string feeds = "[MainBand]\nCaption=Found\n";
  Boxes.MessageAnswers.push_back(MessageAnswer::No);
  BandPlan plan = Load(feeds);
  EXPECT_EQ(plan.Caption, "Test");
  plan.Description = "never written";
  Plans.SaveBandPlan(plan);
  Plans.Finish();
  EXPECT_EQ(Stored(), feeds);
  Boxes.MessageAnswers.push_back(MessageAnswer::Yes);
  EXPECT_EQ(Load("\xEF\xBB\xBF" + feeds).Caption, "Found");
  EXPECT_EQ(Stored(), Lines(feeds));
  Failure failure;
  EXPECT_EQ(Storage.Read(std::string(kPath) + ".bak", failure), "\xEF\xBB\xBF" + feeds);
  EXPECT_EQ(Boxes.Messages.size(), 2U);
}

TEST_F(PlanFiles, WhatCantBeWrittenIsToldInOneBoxAndTheOldFileStays) {
  const std::string before = Lines("[MainBand]\nCaption=Old\n");
  BandPlan plan = Load(before);
  BandPlan untouched = Fresh();
  untouched.FileName = "plans/Gone.bpl";
  Storage.SetSpace(10);
  Plans.SaveBandPlan(untouched);
  Plans.SaveBandPlan(plan);
  Plans.Finish();
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text.find("ProfileSaveItem: 28 plans/Test.bpl"), 0U) << Boxes.Messages[0].Text;
  EXPECT_EQ(Stored(), before);
  EXPECT_FALSE(Storage.Exists("plans/Gone.bpl"));
  Storage.SetSpace(1000000);
  Plans.SaveBandPlan(plan);
  Plans.Finish();
  EXPECT_NE(Stored().find("Caption=Old\r\nIndex=0\r\n"), std::string::npos) << "when there is room again";
  EXPECT_EQ(Boxes.Messages.size(), 1U);
}

// 200 kills, each at the next step of a save that does something else than the one before.
TEST_F(PlanFiles, ASaveThatIsKilledLeavesTheOldPlanOrTheNewOne) {
  Storage.Put(kPath, "");
  BandPlan plan = Fresh();
  plan.Loaded = true;
  Plans.SaveBandPlan(plan);
  Plans.Finish();
  int kills = 0, steps = 0;
  for (int round = 0; kills < 200; ++round) {
    SCOPED_TRACE(round);
    const std::string before = Stored();
    plan.Description = "round " + std::to_string(round);
    plan.SubBands[std::size_t(round % 18)].Presets[std::size_t(round % 12)].Settings = {
        .Changed = true, .FreqCurrent = 1000000 + round};
    modBandPlan killed(Storage, Worker, Queue, Boxes, Clock);
    Storage.KillAfter(steps);
    try {
      killed.SaveBandPlan(plan);
      killed.Finish();
      steps = 0;
    } catch (const Killed&) {
      ++kills;
      ++steps;
    }
    Storage.Revive();
    if (round % 2 == 1) Storage.CutPower();
    const std::string after = Stored();
    ProfileText wanted(before);
    for (const ProfileItem& item : BandPlanItems(plan)) wanted.Put(item.Section, item.Key, item.Value);
    EXPECT_TRUE(after == wanted.Text() || (steps > 0 && after == before)) << after;
    RemoveLeftovers(Storage, kPath);
    ASSERT_EQ(Storage.List("plans", ""), std::vector<std::string>{"Test.bpl"});
  }
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(PlanFiles, TenMegabytesOfRubbishAndNineteenSubBandsLoadByTheRules) {
  constexpr std::size_t kLength = 10 << 20;
  constexpr std::string_view kOften = "[]=\r\n0SubBandPreset.FreqCurrent";
  std::mt19937 random(19);
  std::string rubbish;
  while (rubbish.size() < kLength / 2) {
    const auto bits = static_cast<std::uint32_t>(random());
    rubbish += (bits & 0xFF00) < 0x8000 ? kOften[bits % kOften.size()] : static_cast<char>(bits & 0xFF);
    if ((bits >> 16) % 40 == 0) rubbish += "\r\n";
  }
  std::string bands = "\r\n[MainBand]\r\nNumSubBands=18\r\nActiveSubBand=18\r\n";
  for (int n = 0; n < 20; ++n) {
    const std::string number = std::to_string(n);
    bands += "[SubBand." + number + "]\r\nFreqMin=" + number + "000\r\n[Preset." + number +
             ".12]\r\nFreqCurrent=5\r\n";
  }
  const BandPlan plan = Load(rubbish + bands + rubbish);
  EXPECT_EQ(plan.NumSubBands, 18);
  EXPECT_EQ(plan.ActiveSubBand, 17) << "the last one that has a button";
  ASSERT_EQ(plan.SubBands.size(), 19U);
  for (int n = 0; n < 19; ++n) {
    const SubBand& band = plan.SubBands[std::size_t(n)];
    EXPECT_EQ(band.FreqMin, n * 1000);
    ASSERT_EQ(band.Presets.size(), 13U);
    EXPECT_EQ(band.Presets[12].Settings.FreqCurrent, 5);
  }
}

TEST_F(PlanFiles, ALoadThatIsReEnteredRefusesAndASaveWaits) {
  BandPlan other = Fresh();
  bool refused = false;
  Queue.Post([&] {
    EXPECT_TRUE(Plans.BandPlanLoading);
    refused = !Plans.LoadBandPlan(other, Current);
  });
  EXPECT_TRUE(Load(Lines("[SubBand.0]\nFreqMin=5\n")).Loaded);
  EXPECT_TRUE(refused);
  EXPECT_FALSE(other.Loaded || Plans.BandPlanLoading);
}

TEST(ProfileFiles, AnElementIsAFieldBetweenCommas) {
  VirtualFiles files;
  VirtualDialogs boxes;
  ProfileSaveItem(files, boxes, "Theme", "Grid", "a, b,,d", "x.thm");
  const auto get = [&](std::int32_t element, const char* key = "GRID") {
    return ProfileGetItem(files, boxes, "theme", key, "none", "x.thm", element);
  };
  EXPECT_EQ(get(0), "a, b,,d");
  EXPECT_EQ(get(1), "a");
  EXPECT_EQ(get(2), " b");
  EXPECT_EQ(get(3), "");
  EXPECT_EQ(get(4), "d");
  EXPECT_EQ(get(5), "");
  EXPECT_EQ(get(0, "Gri"), "none");
  ProfileSaveItem(files, boxes, "Theme", "Long", std::string(3000, 'x'), "x.thm");
  EXPECT_EQ(get(0, "Long").size(), 2047U);
  EXPECT_TRUE(boxes.Messages.empty());
}

}  // namespace
}  // namespace quorl
