// Thousands of random gestures on every control: whatever is done, controls and state agree and stay in
// range.
#include <random>

#include "reception/ReceptionRig.h"
#include "support/NumberPicture.h"

namespace quorl {
namespace {

struct MonkeyTest : testing::Test, ReceptionRig {
  int Pick(int from, int to) { return std::uniform_int_distribution(from, to)(random); }
  Modifiers AnyModifiers() { return {Pick(0, 3) == 0, Pick(0, 3) == 0, Pick(0, 9) == 0}; }

  void Gesture() {
    const std::vector<Control*> all = registry.All();
    Control& control = *all[static_cast<std::size_t>(Pick(0, static_cast<int>(all.size()) - 1))];
    last = control.Name();
    // The view brings no pointer gestures to what is disabled or hidden.
    const bool reachable = control.Enabled() && control.Visible();
    switch (Pick(0, 6)) {
      case 0:
      case 1:
        control.UserClick();
        break;
      case 2:
        control.UserSet(std::to_string(Pick(-15000, 15000)));
        break;
      case 3:
        hand::Hover(control);
        break;
      case 4:
        hand::Click(control, {.Button = MouseButton::Right});
        break;
      case 5:
        if (reachable) control.Wheel(Pick(-1, 1), {.With = AnyModifiers()});
        break;
      default: {
        constexpr std::array keys{Key::A, Key::Z, Key::Up, Key::Down, Key::Left, Key::Right, Key::Space};
        mouse.KeyDown({keys[static_cast<std::size_t>(Pick(0, 6))], AnyModifiers()});
      }
    }
  }

  void ExpectChoice(OptionGroup& group, int chosen) {
    EXPECT_EQ(group.Pressed(), chosen) << group.Name();
    for (int i = 0; i < group.Count(); ++i) {
      EXPECT_EQ(group(i).BackColour() == kSelectedColour, i == chosen) << group.Name() << i;
    }
  }
  void ExpectSwitch(CheckBox& box, bool on) {
    EXPECT_EQ(box.Value(), on) << box.Name();
    EXPECT_EQ(box.BackColour() == kSelectedColour, on) << box.Name();
  }
  template <typename T>
  void ExpectWithin(T value, T low, T high) {
    EXPECT_GE(value, low);
    EXPECT_LE(value, high);
  }

  void CheckChoices() {
    ExpectChoice(demod.optMode, vars.CurrentDemodMode);
    ExpectChoice(filter.optFilter, vars.CurrentFilterMode);
    ExpectChoice(ifFilter.optIFFilter, vars.CurrentIFFilterMode);
    ExpectChoice(notch.optNotch, vars.NotchMode);
    ExpectChoice(agcPanel.optAGC, vars.AGCMode);
    ExpectSwitch(filter.chkMusic, vars.MusicMode);
    ExpectSwitch(filter.chkDynFilter, vars.DynFilterActive);
    ExpectSwitch(ifFilter.chkIFFilter, filters.IFFilterI.Active);
    ExpectSwitch(notch.chkNotchOn, vars.NotchActive);
    ExpectSwitch(notch.chkNotchAuto, vars.NotchMode == NotchModes::Auto);
    ExpectSwitch(notch.chkNotchType, vars.NotchType == NotchTypes::IF);
    ExpectSwitch(notch.chkNotchMirror, vars.NotchMirror);
    ExpectSwitch(nb.chkNB, vars.NBOn);
    ExpectSwitch(agcPanel.chkAGC, vars.AGCON);
    EXPECT_EQ(filters.NotchFilterI.Active, vars.NotchActive);
    EXPECT_TRUE(vars.IFFilterActive || !filters.IFFilterI.Active);
    EXPECT_FALSE(filters.IFFilterI.Active && vars.CurrentIFFilterMode == IFFilterMode::Off);
    EXPECT_FALSE(vars.NotchMode == NotchModes::Auto && vars.NotchType == NotchTypes::IF);
  }

  void CheckValues() {
    ExpectWithin(vars.FilterLo, 0, 1999);
    ExpectWithin(vars.FilterHi, 0, 12000);
    EXPECT_EQ(filter.sldBW(0).Value(), 1999 - vars.FilterLo);
    EXPECT_EQ(filter.sldBW(1).Value(), 12000 - vars.FilterHi);
    const bool onIF = vars.NotchType == NotchTypes::IF;
    if (vars.NotchCentre != vars.PeakFrequency) {  // else the tracker's own
      ExpectWithin(vars.NotchCentre, onIF ? IFCentre - 6000 : 0, onIF ? IFCentre + 6000 : 6000);
    }
    ExpectWithin(vars.NotchWidth, 0, 5000);
    EXPECT_EQ(notch.sldNotch.Value(), WholeValue(mouse, CtlIndex::NotchC));
    EXPECT_EQ(vars.NotchSettings.IFMin, -6000);
    EXPECT_EQ(vars.NotchSettings.AudioMin, 0);
    ExpectWithin(vars.NBThreshold, 0.0F, 0.2F);
    EXPECT_EQ(nb.sldNB.Value(), nb.dialNB.Value());
    ExpectWithin(vars.AGCDelayCallbacks, 0, 234);
    ExpectWithin(vars.AGCSmoothSamples, 0, 960);
    ExpectWithin(vars.OutputAttenuation, -10000.0F, 9.0F);
    EXPECT_EQ(volume.sldOutVolume.Value(), volume.dialOutVol.Value());
    ExpectWithin(vars.MixerFrequency, 0, 2 * IFCentre);
    for (const auto& record : vars.IFFilterSettings[IFFilterMode::Manual]) {
      ExpectWithin(record.CurrentHi, 0, 6000);
      ExpectWithin(record.CurrentLo, 0, 6000);
    }
  }

  void CheckLabels() {
    for (int i = 1; i < CtlIndex::Count; ++i) {
      const ScrollableControl& control = mouse(i);
      if (control.Label == nullptr) continue;
      EXPECT_EQ(control.NoFocus, !control.Label->Enabled() || !control.Label->Visible()) << i;
      EXPECT_FALSE(mouse.ActiveCtl() == i && control.NoFocus) << i;
      const bool lit = control.Label->ForeColour() == control.FocusColour;
      if (i != CtlIndex::BFO) {
        EXPECT_EQ(lit, mouse.ActiveCtl() == i) << i;
      }
      if (control.ShowValue) {
        EXPECT_EQ(control.Label->Caption(), FormatPicture(control.Value, control.Format)) << i;
      }
    }
  }

  std::mt19937 random{20240607};
  std::string last;
};

TEST_F(MonkeyTest, ControlsAndStateAgreeWhateverIsDone) {
  for (int i = 0; i < 20000; ++i) {
    Gesture();
    // Now and then one hand is quicker than the handler.
    if (Pick(0, 3) == 0) AtNextYield([this] { Gesture(); });
    CheckChoices();
    CheckValues();
    CheckLabels();
    ASSERT_FALSE(HasFailure()) << "after gesture " << i << " on " << last;
    if (i % 1000 == 0) {
      radio.FilterMaker.MakeFilters();
      radio.FilterMaker.NotchHousekeeping();
      notch.ShowPeak();
    }
  }
}

}  // namespace
}  // namespace quorl
