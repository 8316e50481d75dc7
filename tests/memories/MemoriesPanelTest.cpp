// Plans, sub-bands and presets under the hand: what a press recalls, what the radio leaves in a memory.
#include "memories/panel/MemoriesPanel.h"

#include <gtest/gtest.h>

#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "reception/ReceptionRig.h"

namespace quorl {
namespace {

constexpr char kForty[] =
    "[MainBand]\r\nCaption=Forty\r\nActiveSubBand=1\r\n"
    "[SubBand.0]\r\nCaption=40m\r\nDescription=Voice\r\nFreqMin=7000000\r\nFreqMax=7200000\r\nActivePreset="
    "0\r\n"
    "FreqCurrent=7050000\r\nDemodMode=2\r\nTuneStep=500\r\nLowSideLO=False\r\n"
    "[Preset.0.0]\r\nCaption=7074\r\nDescription=FT8\r\nActive=True\r\nWhen=2026-10-01 12:34:56\r\n"
    "FreqCurrent=7074000\r\nDemodMode=1\r\nFilterMode=3\r\nFilterHi=2900\r\nFilterLo=200\r\nAGCAttack=12."
    "5\r\nAGCDecay=40\r\n"
    "NotchFilterWidth=50\r\nOutputAttenuation=-500\r\n"
    "[Preset.0.3]\r\nFreqCurrent=7100500\r\nNotchFilterWidth=50\r\n"
    "[SubBand.1]\r\nCaption=Empty\r\nFreqMin=10100000\r\nFreqMax=10150000\r\n";

class Memories : public testing::Test, protected ReceptionRig {
 protected:
  Memories() {
    links.Tune = [this](std::int32_t dHz) { tuned = dHz; };
    links.Tuned = [this] { return tuned; };
    links.SetTuningRate = [this](std::int32_t index) { rate = index; };
    files.Put("plans/Forty.bpl", kForty);
    files.Put("plans/Other.bpl", "[MainBand]\r\nCaption=Other\r\n[SubBand.2]\r\nCaption=S\r\nFreqMin=5\r\n");
    Make();
  }
  void Make() {
    panel.reset();
    panel.emplace(context, MemoryMachine{files, worker, queue, boxes, clock}, links);
    for (const char* name : {"Forty", "Other"}) {
      BandPlan plan;
      plan.Name = plan.Caption = plan.Description = name;
      plan.FileName = std::string("plans/") + name + ".bpl";
      plan.Index = static_cast<std::int32_t>(panel->BandPlans.size());
      panel->BandPlans.push_back(plan);
    }
    panel->FillBandSelect();
    panel->cboBandSelect.SetListIndex(0);
    panel->tmrSubBands.SetInterval(300);
    panel->tmrSubBands.SetEnabled(true);
  }
  void Press(const std::string& name, MouseButton button = MouseButton::Left, Modifiers with = {}) {
    hand::Click(At(name), {.Button = button, .With = with});
  }
  void Run(int milliseconds) { queue.AdvanceBy(std::chrono::milliseconds(milliseconds)); }
  Preset& PresetAt(int index) { return panel->BandPlans[0].SubBands[0].Presets[std::size_t(index)]; }
  std::string File() {
    panel->Save();
    panel->Finish();
    Failure failure;
    return files.Read("plans/Forty.bpl", failure).value_or("");
  }

  VirtualEventQueue queue{clock};
  VirtualDialogs boxes;
  VirtualFiles files;
  VirtualFileWorker worker{queue};
  std::int32_t tuned = 123, rate = -1;
  MemoryLinks links;
  std::optional<MemoriesPanel> panel;
};

TEST_F(Memories, APlanShowsItsUsedSubBandsAndASubBandItsPresets) {
  EXPECT_EQ(Text("frPresets"), "Forty");
  EXPECT_TRUE(At("optSubBand(0)").Visible() && At("optSubBand(1)").Visible());
  EXPECT_FALSE(At("optSubBand(2)").Visible());
  EXPECT_EQ(Text("optSubBand(1)"), "1");
  EXPECT_EQ(panel->optPreset(0).Caption.operator const std::string&(), "P1");
  Press("optSubBand(0)");
  EXPECT_EQ(std::string(panel->optPreset(0).Caption), "7074");
  EXPECT_EQ(std::string(panel->optPreset(0).ToolTip), "FT8");
  EXPECT_EQ(std::string(panel->optPreset(1).ToolTip), "Unused - Shift + Right Click to set");
  EXPECT_EQ(rate, 8) << "50 Hz of the step table";
  EXPECT_EQ(tuned, 70740000) << "its active preset";
  EXPECT_EQ(Text("optPreset(0)"), "1");
  panel->cboBandSelect.SetListIndex(1);
  EXPECT_EQ(Text("frPresets"), "Other");
  EXPECT_FALSE(At("optSubBand(0)").Visible());
  EXPECT_EQ(vars.CurrentMainBandIndex, 1);
  EXPECT_TRUE(panel->BandPlans[0].Active) << "only a new start clears it";
}

TEST_F(Memories, ARecallSetsTheWholeReceiver) {
  Press("optSubBand(0)");
  EXPECT_EQ(vars.CurrentDemodMode, DemodMode::USB);
  EXPECT_EQ(vars.CurrentFilterMode, 3);
  EXPECT_EQ(vars.FilterHi, 2900);
  EXPECT_EQ(vars.FilterLo, 200);
  EXPECT_EQ(vars.NotchWidth, 50);
  EXPECT_EQ(vars.NotchMode, NotchModes::Manual) << "undone while the notch is off";
  EXPECT_EQ(vars.AGCMode, AGCPreset::User);
  EXPECT_EQ(panel->Memory.SavedAGCMode, AGCPreset::Normal);
  EXPECT_EQ(mouse(CtlIndex::AGCAttack).Value, 12.5F);
  EXPECT_EQ(vars.AGCSettings[AGCPreset::User].CurrentDelay, 12);
  EXPECT_EQ(vars.OutputVolume, -500.0F);
  EXPECT_FALSE(panel->Memory.ApplyingSettings);
  Press("optPreset(3)");
  EXPECT_EQ(tuned, 71005000);
  EXPECT_EQ(vars.FilterHi, vars.FilterSettings[0].DefaultHi) << "no edges: those of the table";
  EXPECT_EQ(vars.NotchWidth, 100);
  EXPECT_TRUE(PresetAt(3).Active);
  EXPECT_FALSE(PresetAt(0).Active);
  tuned = 1;
  Press("optPreset(7)");
  EXPECT_EQ(tuned, 71005000) << "an unused one recalls the last good one";
  EXPECT_EQ(Text("optPreset(3)"), "1");
  EXPECT_EQ(panel->BandPlans[0].SubBands[0].ActivePreset, 3);
}

TEST_F(Memories, FiveHundredHertzKeepAPresetAndOneMoreLetsItGo) {
  Press("optSubBand(0)");
  tuned = 70740000 + 5000;
  radio.SetDemodMode(DemodMode::LSB);
  Run(350);
  EXPECT_TRUE(PresetAt(0).Active);
  EXPECT_EQ(PresetAt(0).Settings.FreqCurrent, 7074000) << "its frequency doesn't drift";
  EXPECT_EQ(PresetAt(0).Settings.DemodMode, DemodMode::LSB) << "the rest follows";
  panel->AutoTrackPresets = false;
  radio.SetDemodMode(DemodMode::AM);
  Run(350);
  EXPECT_EQ(PresetAt(0).Settings.DemodMode, DemodMode::LSB);
  tuned = 70740000 + 5010;
  Run(350);
  EXPECT_FALSE(PresetAt(0).Active);
  EXPECT_EQ(Text("optPreset(0)"), "0");
  EXPECT_EQ(panel->BandPlans[0].SubBands[0].Settings.FreqCurrent, 7074501);
  EXPECT_EQ(panel->BandPlans[0].SubBands[0].Settings.DemodMode, DemodMode::AM);
  panel->StoreTuneStep(2500);
  Press("optSubBand(1)");
  Press("optSubBand(0)");
  EXPECT_EQ(tuned, 70745010) << "found as it was left";
  EXPECT_EQ(rate, 6);
}

TEST_F(Memories, AStampKeepsWhatIsHeardAndReadsRightAfterAWholeClick) {
  Press("optSubBand(0)");
  tuned = 71234560;
  Press("optPreset(5)", MouseButton::Right, {.Shift = true, .Ctrl = true});
  EXPECT_EQ(PresetAt(5).Settings.FreqCurrent, kNotSet) << "Shift alone stamps";
  Press("optPreset(5)", MouseButton::Right, {.Shift = true});
  EXPECT_EQ(PresetAt(5).Settings.FreqCurrent, 7123456);
  EXPECT_EQ(std::string(panel->optPreset(5).Caption), "7123");
  EXPECT_EQ(PresetAt(5).Description, "7,123,456 Hz");
  EXPECT_EQ(PresetAt(5).When.size(), 19U);
  const std::string file = File();
  EXPECT_NE(file.find("[Preset.0.5]\r\n"), std::string::npos);
  EXPECT_NE(file.find("FreqCurrent=7123456\r\nLowSideLO=False\r\n"), std::string::npos);
  EXPECT_EQ(file.find("[Preset.0.6]"), std::string::npos);
}

TEST_F(Memories, TheDialogEditsACopyAndLiterallyKeepsItForThisRunOnly) {
  for (const bool safe : {false, true}) {
    SCOPED_TRACE(safe);
    files.Put("plans/Forty.bpl", kForty);
    Make();
    panel->Memory.SafeMemories = safe;
    panel->AutoTrackPresets = false;
    Press("optSubBand(0)");
    int opened = 0;
    const Listening listening = panel->mnuUserPresets.OnPopup.Listen([&] { ++opened; });
    Press("optPreset(0)", MouseButton::Right);
    EXPECT_EQ(opened, 1) << "once for press and release";
    panel->mnuUserPresets.UserChoose(0);
    EXPECT_TRUE(At("frmEditUserPreset").Visible());
    EXPECT_EQ(Text("frmEditUserPreset.txtPresetValues(1)"), "7 074 000");
    EXPECT_EQ(Text("frmEditUserPreset.txtPresetValues(2)"), "2026-10-01");
    EXPECT_EQ(Text("frmEditUserPreset.txtPresetValues(3)"), "12:34:56");
    Set("frmEditUserPreset.txtPresetValues(1)", "somewhere");
    Click("frmEditUserPreset.cmdSave");
    EXPECT_TRUE(At("frmEditUserPreset").Visible()) << "refused in place";
    Set("frmEditUserPreset.txtPresetValues(1)", "7 090 600");
    Click("frmEditUserPreset.optDemodulationValue(2)");
    Click("frmEditUserPreset.cmdSave");
    EXPECT_FALSE(At("frmEditUserPreset").Visible());
    EXPECT_EQ(tuned, 70906000);
    EXPECT_EQ(vars.CurrentDemodMode, DemodMode::LSB);
    EXPECT_EQ(File().find("FreqCurrent=7090600") != std::string::npos, safe);
    panel->mnuUserPresets.UserChoose(1);
    tuned = 1;
    Click("frmEditUserPreset.cmdCancel");
    EXPECT_EQ(tuned, 1);
  }
}

TEST_F(Memories, SafeMemoriesLeaveAloneWhatAPlanDoesNotSay) {
  panel->Memory.SafeMemories = true;
  radio.SetLowSideLO(true);
  radio.SetVolume(-700);
  panel->cboBandSelect.SetListIndex(1);
  panel->cboBandSelect.SetListIndex(0);
  EXPECT_EQ(tuned, 101000000) << "a sub-band without a frequency begins at its edge";
  tuned = 5;
  Press("optPreset(4)");
  EXPECT_EQ(tuned, 5);
  EXPECT_EQ(Text("lblCaption"), "Unused - Shift + Right Click to set");
  panel->BandPlans[0].SubBands[0].Presets[3].Settings.HasLowSideLO = false;
  Press("optSubBand(0)");
  Press("optPreset(3)");
  EXPECT_TRUE(vars.LowSideLO);
  EXPECT_EQ(vars.OutputVolume, -500.0F) << "of preset 0; preset 3 has none";
}

TEST_F(Memories, AStationIsFoundInAllPlansAndNoneOfThemBecomesOpened) {
  files.Put("plans/Other.bpl",
            "[SubBand.2]\r\nCaption=49m\r\nFreqMin=5\r\n[Preset.2.0]\r\nFreqCurrent=6070000\r\n"
            "Description=Channel 292\r\nDemodMode=0\r\n");
  const auto find = [this](const std::string& text) {
    Set("txtFind", text);
    At("txtFind").KeyDown({Key::Enter, {}});
  };
  find("CHANNEL");
  EXPECT_EQ(tuned, 60700000) << "the only one";
  EXPECT_FALSE(panel->BandPlans[1].Loaded);
  EXPECT_FALSE(At("lstFound").Visible());
  find("70");
  EXPECT_TRUE(At("lstFound").Visible());
  ASSERT_EQ(panel->Finder.lstFound.Items().size(), 2U) << "6070 and 7074";
  EXPECT_EQ(panel->Finder.lstFound.Items()[1], "7074 kHz  FT8  (Forty, 40m)");
  panel->Finder.lstFound.SetListIndex(1);
  EXPECT_EQ(tuned, 70740000);
  EXPECT_FALSE(At("lstFound").Visible());
  find("nobody");
  EXPECT_EQ(tuned, 70740000);
  EXPECT_NE(At("txtFind").ForeColour(), kNoColour);
}

TEST_F(Memories, NamesChangeByHandAndHintsTellWhatIsInAButton) {
  Press("optSubBand(0)");
  boxes.TextAnswers.push_back("Forty metres");
  Press("optSubBand(0)", MouseButton::Right);
  EXPECT_EQ(panel->BandPlans[0].SubBands[0].Caption, "Forty metres");
  boxes.TextAnswers.push_back("Ham");
  panel->cboBandSelect.KeyDown({Key::Insert, {}});
  EXPECT_EQ(panel->cboBandSelect.Items()[0], "Ham");
  EXPECT_EQ(panel->cboBandSelect.ListIndex(), 0);
  EXPECT_NE(File().find("Caption=Ham\r\n"), std::string::npos);

  At("optPreset(0)").MouseMove({});
  EXPECT_FALSE(At("frmPresetDesc").Visible());
  At("optPreset(0)").KeyDown({Key::Control, {.Ctrl = true}});
  At("optPreset(0)").MouseMove({});
  EXPECT_TRUE(At("frmPresetDesc").Visible());
  EXPECT_EQ(Text("lblPresetDesc"),
            "Frequency=7.074 MHz\nModulation=USB\nFilter=3.2 KHz\nDate=2026/10/01\nTime=12:34");
  At("optSubBand(0)").MouseMove({});
  EXPECT_EQ(Text("lblPresetDesc"), "Band=Forty metres\nFreq Lo=7000000\nFreq Hi=7200000");
}

}  // namespace
}  // namespace quorl
