// The panel's controls and the receiver's routines change a receiver alike, and the panel shows what others
// have changed.
#include "reception/ReceptionRig.h"

namespace quorl {
namespace {

struct NotchSetting {
  bool On, Auto, OnIF, Mirror;
  std::int32_t Centre, Width;
};
constexpr NotchSetting kNotches[] = {{false, false, false, false, 1000, 100},
                                     {true, false, false, false, 300, 5000},
                                     {true, false, true, false, -1400, 300},
                                     {true, true, false, true, 1000, 200}};

struct Setting {
  int Mode, Filter, IFFilter;  // IFFilter: -1 for a filter that was never on, 3 for one switched off again
  NotchSetting Notch;
  bool LowSide;
};

// What a hand does, control by control. The side of the oscillator is another panel's.
void ByHand(ReceptionRig& rig, const Setting& to) {
  rig.radio.SetLowSideLO(to.LowSide);
  rig.Click(IndexedName("optMode", to.Mode));
  rig.Click(IndexedName("optFilter", to.Filter));
  rig.Set("sldBW(1)", std::to_string(12000 - 1900));
  if (to.IFFilter >= 0) {
    rig.Click("chkIFFilter");
    rig.Click(IndexedName("optIFFilter", to.IFFilter % 3));
    if (to.IFFilter == IFFilterMode::Manual) rig.Wheel("lblIFHi", -3);
    if (to.IFFilter == 3 && rig.Text("chkIFFilter") == "1") rig.Click("chkIFFilter");
  }
  rig.Click("chkMusic");
  if (to.Notch.On) {
    rig.Click("chkNotchOn");
    if (to.Notch.OnIF) rig.Click("chkNotchType");
    rig.Set("sldNotch", std::to_string(to.Notch.Centre));
    rig.Set("sldNotchWidth", std::to_string(to.Notch.Width));
    if (to.Notch.Auto) rig.Click("chkNotchAuto");
    if (to.Notch.Mirror) rig.Click("chkNotchMirror");
  }
  rig.Click("chkDynFilter");
  rig.Click("chkNB");
  rig.Set("sldNB", "2500");
  rig.Click("optAGC(1)");
  rig.Set("sldAGCAttack", "31");
  rig.Set("sldOutVolume", "-1234");
  rig.Wheel("lblBFO", 2);
}

void ByRoutine(Receiver& radio, const Setting& to) {
  radio.SetLowSideLO(to.LowSide);
  radio.SetDemodMode(to.Mode);
  radio.SetFilterMode(to.Filter);
  radio.SetFilterHigh(1900);
  if (to.IFFilter >= 0) {
    radio.SwitchIFFilter(true);
    radio.SetIFFilterMode(to.IFFilter % 3);
    if (to.IFFilter == IFFilterMode::Manual) radio.SetIFHigh(radio.Vars.IFHi - 30);
    if (to.IFFilter == 3) radio.SwitchIFFilter(false);
  }
  radio.SetMusic(true);
  if (to.Notch.On) {
    radio.SwitchNotch(true);
    if (to.Notch.OnIF) radio.SetNotchType(NotchTypes::IF);
    radio.SetNotchCentre(to.Notch.Centre);
    radio.SetNotchWidth(to.Notch.Width);
    if (to.Notch.Auto) radio.SetNotchMode(NotchModes::Auto);
    if (to.Notch.Mirror) radio.SetNotchMirror(true);
  }
  radio.SetDynamicFilter(true);
  radio.SwitchNoiseBlanker(true);
  radio.SetNoiseBlankerLevel(2500.0F);
  radio.SetAGCPreset(AGCPreset::Fast);
  radio.SetAGCDelay(31.0F);
  radio.SetVolume(-1234.0F);
  radio.SetBFO(40);
}

// What every control shows.
std::string Picture(const ReceptionRig& rig) {
  std::string all;
  for (const Control* control : rig.registry.All()) {
    all += control->Name() + "=" + control->Text() + (control->Enabled() ? "" : " off") +
           (control->Visible() ? "" : " hidden") + " " + std::to_string(control->BackColour()) + "\n";
  }
  return all;
}

// As it came into the world, told part by part to those who show it.
void Renew(Receiver& radio, const PublicVars& first) {
  radio.Vars = first;
  for (clsFFTFilter* filter :
       {&radio.Filters.IFFilterI, &radio.Filters.NotchFilterI, &radio.Filters.DynFilter}) {
    filter->Active = false;
  }
  for (const ReceiverPart part : {ReceiverPart::Side, ReceiverPart::BFO, ReceiverPart::Mode,
                                  ReceiverPart::Filter, ReceiverPart::IFFilter, ReceiverPart::Notch,
                                  ReceiverPart::NoiseBlanker, ReceiverPart::AGC, ReceiverPart::Volume}) {
    radio.Changed(part);
  }
}

TEST(TwoRoads, ControlsAndRoutinesLeaveTheSameReceiverAndTheSamePanel) {
  ReceptionRig byHand, byRoutine;
  const PublicVars first = byHand.vars;
  ASSERT_TRUE(first == byRoutine.vars);
  const std::string firstPicture = Picture(byHand);
  for (int mode = 0; mode < DemodMode::Count; ++mode) {
    for (int filter = 0; filter < FilterModeCount; ++filter) {
      for (int ifFilter = -1; ifFilter <= 3; ++ifFilter) {
        for (const NotchSetting& notch : kNotches) {
          for (const bool lowSide : {false, true}) {
            ByHand(byHand, {mode, filter, ifFilter, notch, lowSide});
            ByRoutine(byRoutine.radio, {mode, filter, ifFilter, notch, lowSide});
            ASSERT_EQ(Picture(byHand), Picture(byRoutine)) << mode << " " << filter << " " << ifFilter;
            ASSERT_TRUE(byHand.vars == byRoutine.vars)
                << mode << " " << filter << " " << ifFilter << " " << notch.Centre << " " << lowSide;
            Renew(byHand.radio, first);
            Renew(byRoutine.radio, first);
          }
        }
      }
    }
  }
  EXPECT_EQ(Picture(byHand), firstPicture);
}

TEST(TwoRoads, ASecondPanelFollowsTheFirstAndLeavesWithItsOwner) {
  ReceptionRig rig;
  ControlRegistry other;
  {
    ScrollableControls mouse{rig.scheme};
    PanelColours colours{other, rig.scheme, mouse};
    const PanelContext context{other, mouse, colours, rig.radio, [] {}};
    FilterPanel filter(context);
    NotchPanel notch(context);
    rig.Click("optFilter(2)");
    rig.Click("chkNotchOn");
    rig.Set("sldNotch", "1500");
    EXPECT_EQ(filter.optFilter.Pressed(), 2);
    EXPECT_EQ(filter.lblFHi.Text(), "Fhi : 2,300 Hz");
    EXPECT_TRUE(notch.chkNotchOn.Value());
    EXPECT_EQ(notch.sldNotch.Value(), 1500);
    filter.chkMusic.UserClick();
    EXPECT_EQ(rig.Text("lblFilterLo"), "50");
  }
  rig.Click("optFilter(3)");
  EXPECT_EQ(rig.vars.FilterHi, 3000);
}

}  // namespace
}  // namespace quorl
