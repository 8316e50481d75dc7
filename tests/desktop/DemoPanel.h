// A panel with all controls of the main window and no handlers: what the window is tried on.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "controls/ControlRegistry.h"
#include "controls/Controls.h"

namespace quorl {

class DemoPanel {
 public:
  DemoPanel() {
    for (const auto& [name, caption] : kFrames) Add<Frame>(name).Caption = std::string(caption);
    for (const auto& [name, caption] : kLabels) Add<Label>(name).Caption = std::string(caption);
    for (const char* name : kTurned) Get<Label>(name).Number = [] { return Label::TurnedNumber{0, 0, 100}; };
    for (const auto& [name, caption] : kToggles) Add<CheckBox>(name).Caption = std::string(caption);
    for (const char* name : kSliders) Add<Slider>(name).SetValue(30);
    for (const char* name : {"dialNB", "dialOutVol"}) Add<Dial>(name).Bounded = true;
    Get<Dial>("dialNB").SetValue(30);
    Get<Dial>("dialOutVol").SetValue(60);
    Add<Dial>("dialtuner").SetValue(7);
    AddGroups();
    AddTuning();
    AddMeters();
  }

  ControlRegistry Registry;

  template <class C>
  C& Get(const std::string& name) {
    return dynamic_cast<C&>(*Registry.Find(name));
  }
  OptionGroup& Group(const std::string& name) {
    for (const auto& group : groups_) {
      if (group->Name() == name) return *group;
    }
    throw std::logic_error(name);
  }
  void ShowDigits(const std::string& nine) {
    for (int i = 0; i < 9; ++i) {
      Get<Label>(IndexedName("lbl7Seg", i)).Caption = nine.substr(static_cast<std::size_t>(i), 1);
    }
  }
  void ShowSignal(int elements) {
    for (int i = 0; i < 28; ++i) Get<Picture>(IndexedName("shpSMeterGrid", i)).Visible = i < elements;
  }

 private:
  using Texts = std::pair<const char*, const char*>;
  static constexpr Texts kFrames[] = {
      {"frFreqCtl", ""},    {"frDemod", "Mode"},       {"frFilters", "Filter"}, {"frIFFilter", "IF Filter"},
      {"frNotch", "Notch"}, {"frNB", "Noise Blanker"}, {"frAGC", "AGC"},        {"frAFOut", "Volume"},
      {"frPwr", ""}};
  static constexpr Texts kLabels[] = {{"lblTuningRate", "100 Hz"}, {"lblTuneDialRate", "100 Hz"},
                                      {"lblClock", "18:42:07"},    {"lblBFO", "0"},
                                      {"lblSMeter", "S9 +6 dB"},   {"lblFilterLo", "300"},
                                      {"lblFilterHi", "2300"},     {"lblIFHiDesc", "IF hi"},
                                      {"lblIFHi", "2300"},         {"lblIFLoDesc", "IF lo"},
                                      {"lblIFLo", "300"},          {"lblNotch", "1000"},
                                      {"lblNotchCDesc", "Centre"}, {"lblNotchC", "1000"},
                                      {"lblNotchWDesc", "Width"},  {"lblNotchW", "100"},
                                      {"lblNB", "0.00"},           {"lblOutVol", "2.3"},
                                      {"lblAGCAttack", "5.0"},     {"lblAGCDecay", "10.0"}};
  static constexpr const char* kTurned[] = {"lblBFO",    "lblFilterLo",  "lblFilterHi", "lblIFHi",
                                            "lblIFLo",   "lblNotchC",    "lblNotchW",   "lblNB",
                                            "lblOutVol", "lblAGCAttack", "lblAGCDecay"};
  static constexpr Texts kToggles[] = {{"chkMusic", "Music"},
                                       {"chkDynFilter", "Dynamic"},
                                       {"chkIFFilter", "On"},
                                       {"chkNotchOn", "On"},
                                       {"chkNotchAuto", "Auto"},
                                       {"chkNotchType", "IF"},
                                       {"chkNotchMirror", "Mirror"},
                                       {"chkNB", "On"},
                                       {"chkMute", ""},
                                       {"chkAGC", "On"},
                                       {"chkTuneLo", "Low Side LO"},
                                       {"chkSpectrumAnalyser", "Analyser"},
                                       {"chkPerfStatsOn", "Statistics"}};
  static constexpr const char* kSliders[] = {"sldBW(0)", "sldBW(1)",     "sldNotch",     "sldNotchWidth",
                                             "sldNB",    "sldOutVolume", "sldAGCAttack", "sldAGCDecay"};

  template <class C>
  C& Add(const std::string& name) {
    auto control = std::make_unique<C>(Registry, name);
    C& added = *control;
    controls_.push_back(std::move(control));
    return added;
  }
  void AddGroup(const std::string& name, const std::vector<std::string>& captions, int pressed) {
    groups_.push_back(std::make_unique<OptionGroup>(Registry, name, static_cast<int>(captions.size())));
    for (int i = 0; i < groups_.back()->Count(); ++i) {
      (*groups_.back())(i).Caption = captions[static_cast<std::size_t>(i)];
      (*groups_.back())(i).BackColour = i == pressed ? 0xFFFF00U : 0xC0C000U;
    }
    groups_.back()->Press(pressed);
  }
  void AddGroups() {
    AddGroup("optMode", {"&AM", "&USB", "&LSB", "&DRM", "&FM", "&BC"}, 1);
    AddGroup("optFilter", {"5.0 KHz", "400 Hz", "2.4 KHz", "3.2 KHz", "4.0 KHz"}, 2);
    AddGroup("optIFFilter", {"Off", "Man", "Track"}, 2);
    AddGroup("optNotch", {"Man", "Auto"}, 1);
    AddGroup("optAGC", {"Off", "Fast", "Normal", "Slow", "User"}, 2);
    Group("optAGC")(4).Visible = false;
    AddGroup("optPwr", {"On", "Off", "&Close"}, 0);
    Group("optPwr")(0).BackColour = 0x00C000;
    Group("optPwr")(1).BackColour = 0x0000FF;
    Group("optPwr")(2).Enabled = false;
    AddGroup("optDisplaySize", {"Ext", "Std", "Comp", "Full"}, 1);
  }
  void AddTuning() {
    for (int i = 0; i < 9; ++i) Add<Label>(IndexedName("lbl7Seg", i)).ForeColour = 0x0000FF;
    Add<FrequencyDisplay>("picFreqDisp").ChosenDigit = 6;
    Add<Label>("lbl7SegTop").Visible = false;
    Add<Label>("lblTuningLimit").Visible = false;
    ShowDigits("070850000");
    Add<Picture>("imgTuneStepLock");
    auto& steps = Add<PopupBox>("cboTuningSteps");
    steps.SetItems({"10 KHz", "1 KHz", "100 Hz", "10 Hz", "5 dHz"});
    steps.Visible = false;
    static constexpr const char* kMenu[] = {"Cancel", "-", "Set Tuning Rate", "Lock Tune Rate"};
    for (const char* name : {"mnuVFOControlSub", "mnuVFOStepSub"}) {
      controls_.push_back(std::make_unique<Menu>(Registry, name, kMenu));
    }
  }
  void AddMeters() {
    Add<Picture>("picSmeter").Caption = std::string("Meter Backoff=20.00 dB");
    for (int i = 0; i < 28; ++i) Add<Picture>(IndexedName("shpSMeterGrid", i));
    ShowSignal(12);
    Add<CommandButton>("cmdConfig").Caption = std::string("Confi&g...");
    Add<ListBox>("lstLog").SetItems(
        {"frmMain:frmMain:Form_Load:Start", "frmMain:frmMain:Form_Load:Resizing"});
    Add<CommandButton>("cmdCalibrateSMeter").Caption = std::string("Calibrate");
    static constexpr const char* kStats[] = {"Peak In",    "Peak Out",   "AGC Gain", "LO",
                                             "DSP Window", "DSP Window", "",         "",
                                             "",           "Thread1",    "Thread2",  "Thread3"};
    static constexpr const char* kValues[] = {
        "4,119  -18 dB", "16,384  -6 dB", "11.75  21.4 dB", "52 108 500 Hz", "1%", "  412 uS"};
    for (int i = 0; i < 12; ++i) {
      Add<Label>(IndexedName("lblStats", i)).Caption = std::string(kStats[i]);
      Add<Label>(IndexedName("lblStatsVal", i)).Caption = std::string(i < 6 ? kValues[i] : "");
    }
    Get<Label>("lblStatsVal(0)").ForeColour = 0x00FF00;
    Get<Label>("lblStatsVal(4)").ForeColour = 0x00FF00;
  }

  std::vector<std::unique_ptr<Control>> controls_;
  std::vector<std::unique_ptr<OptionGroup>> groups_;
};

}  // namespace quorl
