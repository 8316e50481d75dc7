// The scope: spectrum, waterfall, oscilloscope and XY display of the signal at one point of the receiver.
#pragma once

#include <array>

#include "config/SettingsStore.h"
#include "config/SettingsTable.h"
#include "controls/Timer.h"
#include "display/scope/MarksLayer.h"
#include "display/scope/PassbandLayer.h"
#include "display/scope/ScopeChannels.h"
#include "display/scope/ScopeContext.h"
#include "display/scope/ScopeCursor.h"
#include "display/scope/ScopeGrips.h"
#include "display/scope/ScopeLevels.h"
#include "display/scope/ScopeMenu.h"
#include "display/scope/ScopeOptions.h"
#include "display/scope/ScopePointer.h"
#include "display/scope/ScopeWaterfall.h"
#include "display/scope/ScopeWindow.h"

namespace quorl {

// Which mode, which source, and when a picture is drawn: with each block while the radio plays, ten times a
// second while it doesn't, never where nobody sees it.
class ScopePanel {
 public:
  ScopePanel(const PanelContext& context, EventQueue& queue, const Clock& clock, ScopePanelLinks links);

 private:
  PanelContext panel_;
  ScopePanelLinks links_;

 public:
  clsSpectrumAnalyser SpectrumAnalyser;
  ScopeOptions Options;

  Frame frScope, frScopeSweep;
  CanvasPicture picScope, picWaterfall;
  Slider sldScopeSplit;           // thousandths of the height that the spectrum takes
  OptionGroup chkScopeMode;       // ScopeMode
  OptionGroup optSpectrumSource;  // SpectrumSource
  CheckBox chkSpectrumAnalyser;
  CheckBox chkScopeFreeze;
  Timer tmrSpectrumDisplay;

 private:
  ScopeContext context_;

 public:
  ScopeWindow Window;
  ScopeChannels Channels;
  ScopeLevels Levels;
  ScopeCursor Cursor;
  MarksLayer Marks;
  ScopePointer Pointer;
  ScopeWaterfall Waterfall;
  ScopeMenu Menus;

  // The start's steps: the instrument takes its stored settings; it is made, and shown in its mode.
  void Create(const SettingsStore& store);
  void Initialise();
  // What the stored settings have brought, put in force.
  void Apply();
  // The picture is to lie where the radio is tuned.
  void TakeTunedFrequency();
  // The timer of a radio that is off.
  void EnableTimer();

  void chkScopeMode_Click(int index);
  void optSpectrumSource_Click(int index);
  void chkSpectrumAnalyser_Click();
  void chkScopeFreeze_Click();
  void tmrSpectrumDisplay_Timer();

  // A block has left for the loudspeaker.
  void BlockOut();
  // The tick of the tuning timer.
  void Periodic();
  void SetPower(bool on);
  // The panel's size has room for the scope.
  void SetRoom(bool room);
  // Somebody can see it.
  void SetSeen(bool seen);
  void ShowNotch(bool shown) { SpectrumAnalyser.ShowNotch = shown; }
  // No more pictures: the end of the program.
  void Stop();

  // Rows of the main section, and the sections of the instrument and of the scope.
  void AddSettings(SettingsTable& table);
  void ReadSettings(const SettingsStore& store);
  void WriteSettings(SettingsStore& store) const;

 private:
  void Connect();
  void ConnectPictures();
  void ConnectLayers();
  void FollowSource();
  void Follow(ReceiverPart part);
  void ApplyOptions();
  void TakeActive();
  void Redraw();

  PassbandLayer passband_;
  WindowGrip windowGrip_;
  BandGrip bandGrip_;
  EdgeGrip edgeGrip_;
  SettingsTable table_{kScopeSection};
  bool idle_ = true;  // the radio is off
  bool room_ = true, seen_ = true;
  bool inMode_ = false;
  bool playing_ = false;  // a recording, when it was last asked
  Listening listening_;
};

}  // namespace quorl
