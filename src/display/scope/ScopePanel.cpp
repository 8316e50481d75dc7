#include "display/scope/ScopePanel.h"

#include <algorithm>

#include "support/Rounding.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr int kBlockDelay = 2;                                         // ms after a block has left
constexpr int kIdleInterval = 100;                                     // ms
constexpr int kLeastSplit = 100, kMostSplit = 900, kFirstSplit = 500;  // thousandths

constexpr std::array<ButtonText, ScopeMode::Count> kModeTexts{{
    {"Freq", "Spectrum"},
    {"Time", "Oscilloscope"},
    {"XY", "One channel over the other"},
}};

}  // namespace

ScopePanel::ScopePanel(const PanelContext& context, EventQueue& queue, const Clock& clock,
                       ScopePanelLinks links)
    : panel_(context),
      links_(std::move(links)),
      SpectrumAnalyser(panel_.Rx.Settings, panel_.Rx.Vars, panel_.Yield),
      frScope(panel_.Registry, "frScope"),
      frScopeSweep(panel_.Registry, "frScopeSweep"),
      picScope(panel_.Registry, "picScope"),
      picWaterfall(panel_.Registry, "picWaterfall"),
      sldScopeSplit(panel_.Registry, "sldScopeSplit"),
      chkScopeMode(panel_.Registry, "chkScopeMode", ScopeMode::Count),
      optSpectrumSource(panel_.Registry, "optSpectrumSource", static_cast<int>(SpectrumSourceTexts.size())),
      chkSpectrumAnalyser(panel_.Registry, "chkSpectrumAnalyser"),
      chkScopeFreeze(panel_.Registry, "chkScopeFreeze"),
      tmrSpectrumDisplay(queue, [this] { tmrSpectrumDisplay_Timer(); }),
      context_{panel_, SpectrumAnalyser, links_, &picScope},
      Window(context_),
      Channels(context_),
      Levels(context_),
      Cursor(context_, Options),
      Marks(context_, Options),
      Pointer(context_, Options, Window, picScope, picWaterfall),
      Waterfall(context_, Options, picWaterfall, clock),
      Menus(panel_.Registry, Options),
      passband_(context_, Options),
      windowGrip_(Options, Window),
      bandGrip_(context_, Options),
      edgeGrip_(context_, Options) {
  Connect();
  ConnectPictures();
  ConnectLayers();
  listening_ = panel_.Rx.Changed.Listen([this](ReceiverPart part) { Follow(part); });
}

void ScopePanel::Connect() {
  frScope.Caption = "Scope";
  frScopeSweep.Caption = "Sweep";
  for (Frame* frame : {&frScope, &frScopeSweep}) panel_.Colours.Add(*frame);
  panel_.Colours.AddRepaint([this] { Redraw(); });
  SetTexts(chkScopeMode, kModeTexts);
  chkScopeMode.Click = [this](int index) { chkScopeMode_Click(index); };
  SetTexts(optSpectrumSource, SpectrumSourceTexts);
  optSpectrumSource.Click = [this](int index) { optSpectrumSource_Click(index); };
  chkSpectrumAnalyser.Caption = "Scope";
  chkSpectrumAnalyser.ToolTip = "Spectrum display on or off";
  BindToggle(chkSpectrumAnalyser, [this] { chkSpectrumAnalyser_Click(); });
  chkScopeFreeze.Caption = "Freeze";
  chkScopeFreeze.ToolTip = "Holds the picture";
  BindToggle(chkScopeFreeze, [this] { chkScopeFreeze_Click(); });
  sldScopeSplit.Min = kLeastSplit;
  sldScopeSplit.Max = kMostSplit;
  sldScopeSplit.Reversed = true;  // a notch away from the user takes the bar up
  sldScopeSplit.SetValue(kFirstSplit);
  SpectrumAnalyser.Playing = links_.IsPlaying;
  Menus.OnOptions = [this] { ApplyOptions(); };
  Menus.WheelTunes = [this] { return Pointer.WheelTunes(); };
  Menus.SetWheelTunes = [this](bool tunes) { Pointer.SetWheelTunes(tunes); };
  Menus.Fit = [this] { Levels.Fit(); };
}

void ScopePanel::ConnectPictures() {
  picScope.AccessibleName = "Scope";
  picWaterfall.AccessibleName = "Waterfall";
  picScope.OnSurfaces = [this] {
    SpectrumAnalyser.picDisplay0(picScope.Surface0());
    SpectrumAnalyser.picDisplay1(picScope.Surface1());
    Redraw();
  };
  Pointer.OnMenu = [this] { Menus.PopUp(); };
  Pointer.OnHover = [this](const ScopePlace& place) { Cursor.Follow(place); };
  Pointer.Grips = {&Waterfall, &windowGrip_, &edgeGrip_, &bandGrip_, &Marks};
  Cursor.PastAt = [this](const ScopePlace& place) { return Waterfall.At(place); };
  Levels.OnLevels = [this] { Waterfall.Apply(); };
  SpectrumAnalyser.OnLine = [this](const SpectrumLine& line) { Waterfall.Add(line); };
  Options.AddSettings(table_);
  Levels.AddSettings(table_);
  Channels.AddSettings(table_);
  Window.AddSettings(table_);
  table_.Add<std::int32_t>(
      "Split", [this] { return sldScopeSplit.Value(); },
      [this](std::int32_t split) { sldScopeSplit.SetValue(split); });
  table_.Add<std::int32_t>(
      "Source", [this] { return SpectrumAnalyser.SpectrumSource; },
      [this](std::int32_t source) {
        SpectrumAnalyser.SpectrumSource = std::clamp(source, SpectrumSource::IFIn, SpectrumSource::AFOut);
      });
}

// Ground first, then what is written on it.
void ScopePanel::ConnectLayers() {
  SpectrumAnalyser.Layers = {&passband_, &Cursor, &Marks};
}

void ScopePanel::Create(const SettingsStore& store) {
  SpectrumAnalyser.ReadSettings(store);
}

void ScopePanel::Initialise() {
  SpectrumAnalyser.init();
  chkScopeMode.Press(SpectrumAnalyser.Mode());
}

void ScopePanel::Apply() {
  optSpectrumSource.Press(SpectrumAnalyser.SpectrumSource);
  SpectrumAnalyser.ShowNotch = panel_.Rx.Filters.NotchFilterI.Active;
  ApplyOptions();
}

// The scale that goes with the source: radio frequencies around the tuned one, or the pitch of plain audio.
void ScopePanel::FollowSource() {
  clsSpectrumAnalyser& analyser = SpectrumAnalyser;
  analyser.TwoSided = Options.TwoSided;
  analyser.FStart = 0;
  analyser.FEnd = FSampling / 2;
  analyser.SetLowSideLO(context_.Vars().LowSideLO);
  analyser.ApplySource();
  TakeTunedFrequency();
}

void ScopePanel::TakeTunedFrequency() {
  const double half = (SpectrumAnalyser.FEnd - SpectrumAnalyser.FStart) / 2.0;
  SpectrumAnalyser.SetFrequencyReference(RoundHalfEven(links_.Wanted() / 10.0 - half));
  Window.sldXCentre_Change();
}

void ScopePanel::Follow(ReceiverPart part) {
  if (part == ReceiverPart::Side || part == ReceiverPart::Mode) FollowSource();
}

void ScopePanel::chkScopeMode_Click(int index) {
  if (inMode_ || index < 0) return;
  ScopedFlag guard(inMode_);
  SpectrumAnalyser.SetMode(index);
  PaintButtons(chkScopeMode, index);
  frScopeSweep.Visible = index != ScopeMode::XY;
  Channels.ShowMode(index);
  Window.ShowMode(index);
  ApplyOptions();
}

void ScopePanel::optSpectrumSource_Click(int index) {
  if (index < 0) return;
  SpectrumAnalyser.SpectrumSource = index;
  PaintButtons(optSpectrumSource, index);
  FollowSource();
  panel_.Rx.Vars.FiltersDirty = true;
}

// What the mode in force has a use for is shown.
void ScopePanel::ApplyOptions() {
  clsSpectrumAnalyser& analyser = SpectrumAnalyser;
  const bool frequency = analyser.Mode() == ScopeMode::Frequency;
  analyser.LevelView = Options.LevelView;
  analyser.Window = Options.Window;
  analyser.Fill = Options.Fill;
  analyser.PeakHold = Options.PeakHold;
  FollowSource();
  picWaterfall.Visible = sldScopeSplit.Visible = Options.Waterfall && frequency;
  for (const int index : {CtlIndex::ScopeTop, CtlIndex::ScopeFloor}) {
    panel_.Scrollables.SetVisible(index, frequency && (Options.LevelView || Options.Waterfall));
  }
  Waterfall.Apply();
  Cursor.ShowMode();
  Marks.Refresh(true);
  Menus.Show();
}

void ScopePanel::chkSpectrumAnalyser_Click() {
  TakeActive();
}

void ScopePanel::SetRoom(bool room) {
  room_ = room;
  TakeActive();
}

void ScopePanel::TakeActive() {
  SpectrumAnalyser.Active = chkSpectrumAnalyser.Value() && room_;
}

void ScopePanel::chkScopeFreeze_Click() {
  SpectrumAnalyser.Freeze = idle_ || chkScopeFreeze.Value();
}

void ScopePanel::SetPower(bool on) {
  idle_ = !on;
  SpectrumAnalyser.Freeze = idle_ || chkScopeFreeze.Value();
  tmrSpectrumDisplay.SetEnabled(false);
  if (!on) EnableTimer();
}

void ScopePanel::EnableTimer() {
  tmrSpectrumDisplay.SetInterval(kIdleInterval);
  tmrSpectrumDisplay.SetEnabled(seen_);
}

void ScopePanel::SetSeen(bool seen) {
  if (seen == seen_) return;
  seen_ = seen;
  if (idle_) EnableTimer();
}

void ScopePanel::BlockOut() {
  if (!SpectrumAnalyser.Active || !seen_) return;
  tmrSpectrumDisplay.SetInterval(kBlockDelay);
  tmrSpectrumDisplay.SetEnabled(true);
}

// While the power is on each picture waits for its block; off, the last one is drawn again and again.
void ScopePanel::tmrSpectrumDisplay_Timer() {
  if (!idle_) tmrSpectrumDisplay.SetEnabled(false);
  Redraw();
}

void ScopePanel::Redraw() {
  if (!seen_ || !SpectrumAnalyser.Active || !SpectrumAnalyser.Initialised()) return;
  SpectrumAnalyser.Freeze ? SpectrumAnalyser.DisplayFrozen() : SpectrumAnalyser.Display();
  Waterfall.Redraw();
}

void ScopePanel::Stop() {
  tmrSpectrumDisplay.SetEnabled(false);
  SpectrumAnalyser.Active = false;
}

void ScopePanel::Periodic() {
  const bool playing = links_.IsPlaying();
  if (playing != playing_) {
    playing_ = playing;
    optSpectrumSource_Click(SpectrumAnalyser.SpectrumSource);
  }
  bandGrip_.Periodic();
  Marks.Refresh();
  Pointer.Renew();
  Cursor.Periodic();
  if (SpectrumAnalyser.Mode() == ScopeMode::Frequency) Window.ShowCentre();
}

void ScopePanel::AddSettings(SettingsTable& table) {
  table.Add<std::int32_t>(
      "SpectrumAnalyserOn", [this] { return chkSpectrumAnalyser.Value() ? 1 : 0; },
      [this](std::int32_t on) { chkSpectrumAnalyser.SetValue(on != 0); });
  table.Add<bool>(
      "ScrollWheelEnableOverScope", [this] { return Pointer.WheelTunes(); },
      [this](bool tunes) { Pointer.SetWheelTunes(tunes); });
}

void ScopePanel::ReadSettings(const SettingsStore& store) {
  table_.Read(store);
}

void ScopePanel::WriteSettings(SettingsStore& store) const {
  SpectrumAnalyser.WriteSettings(store);
  table_.Write(store);
}

}  // namespace quorl
