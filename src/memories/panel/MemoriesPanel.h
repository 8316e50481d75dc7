// Band plan, sub-bands and presets on the panel: what is pressed is heard, and what is heard is remembered.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "controls/Timer.h"
#include "interaction/PanelContext.h"
#include "memories/BandPlan.h"
#include "memories/modBandPlan.h"
#include "memories/panel/HintPanel.h"
#include "memories/panel/PresetDialog.h"
#include "memories/panel/Recall.h"
#include "memories/panel/StationFinder.h"
#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/EventQueue.h"

namespace quorl {

struct MemoryMachine {
  Files& Storage;
  FileWorker& Worker;
  EventQueue& Queue;
  Dialogs& Boxes;
  const Clock& Time;
};

// A preset is unused, stored or active. Tuning more than 500 Hz away from the active one makes it a stored
// one; from then on the sub-band follows the radio, and is found as it was left.
// What a first start puts into a store without such a section.
void PutMemoryDefaults(SettingsStore& store);

class MemoriesPanel {
 public:
  MemoriesPanel(const PanelContext& context, const MemoryMachine& machine, MemoryLinks links);

  Frame frPresets;
  ComboBox cboBandSelect;
  Picture imgBandSelect, picSubBands;
  OptionGroup optSubBand, optPreset;
  ComboBox cboSubBandSelect;
  ListBox lstSubBandSelect;
  Label lblSubBand;
  Menu mnuUserPresets;
  Timer tmrSubBands;
  HintPanel Hints;
  PresetDialog Dialog;
  Recall Memory;
  modBandPlan Plans;

  std::vector<BandPlan> BandPlans;
  StationFinder Finder;
  bool AutoTrackPresets = true;

  // Whether a plan is being read, or the user asked about it: the events go on meanwhile.
  bool IsLoading() const { return Plans.BandPlanLoading; }
  // A file that start-up has found; it is read when the plan is first selected.
  void AddPlan(const std::string& path, const std::string& name);
  // The plan in use, null before the first one is selected.
  BandPlan* Plan();
  // Puts the plans' captions into the selector, once all are there.
  void FillBandSelect();
  void SelectBandPlan(std::int32_t index);
  // Selects the plan of the last time: by its name where there is one of that name, else by its number.
  void SelectLast();

  void optSubBand_Click(std::int32_t index);
  void optSubBand_MouseDown(std::int32_t index, MouseButton button);
  void optPreset_MouseDown(std::int32_t index, MouseButton button, Modifiers with);
  void optPreset_KeyDown(std::int32_t index, const Key& key);
  void cboBandSelect_KeyDown(const Key& key);
  void mnuUserPresets_Save_Click();
  void mnuUserPresets_Edit_Click();
  void tmrSubBands_Timer();

  // The radio is not on the air, as a recording plays: memories neither recall nor follow.
  void SetHeld(bool held);
  // The plan of that file name as it is kept, whether it has been opened or not; without sub-bands where
  // there is none.
  BandPlan PlanNamed(const std::string& name) const;
  // Recalls a preset as if plan, sub-band and preset were pressed one after the other, by their places from
  // 0. False where there is no such preset; all stays as it is then.
  bool RecallByPlace(const std::string& plan, std::int32_t subBand, std::int32_t preset);

  // The step that the tuning panel has taken, dHz, for the active sub-band.
  void StoreTuneStep(std::int32_t dHz);
  // Writes all loaded plans as they are now, beside the sound; nothing while the save before is under way.
  // What falls into a load is written when the plan is there.
  void Save();
  // The same, and waits for it.
  void Finish();
  void AddSettings(SettingsTable& table);
  // Section "Memories".
  void AddOwnSettings(SettingsTable& table) { table.Add("SafeMemories", Memory.SafeMemories); }

 private:
  void ConnectSelectors();
  void ConnectButtons();
  SubBand* Band();
  Preset* ActivePreset();
  void LoadPlan(BandPlan& plan);
  void ShowSplash();
  void ShowSubBands(const BandPlan& plan);
  void ShowPresets();
  void ShowPreset(std::int32_t index);
  void Recalled(SubBand& band);
  void RecallPreset(SubBand& band);
  void ApplyPresetSettings(const Preset& preset);
  void StampPreset(Preset& preset);
  void StampByHand(SubBand& band, std::int32_t index);
  void OpenMenu(const SubBand& band);
  void OpenDialog(bool edits);
  void TakeDialog(std::size_t plan, std::size_t band, std::size_t preset);
  void RenameSubBand(std::int32_t index);
  void PaintSubBands(Colour others, std::int32_t chosen, Colour colour);
  void PaintPresets(std::int32_t chosen);
  void Follow(SubBand& band);
  void MarkTuned();
  void ShowSelectors(const MouseEvent& at);
  void HideSelectors();

  PanelContext context_;
  MemoryMachine machine_;
  MemoryLinks links_;
  std::string currentName_;  // the file's: captions are the user's
  std::vector<Listening> keys_;
  Timer tmrSplash_;
  bool splash_ = false;
  bool saveWaits_ = false;  // for a load
  std::int32_t lastGoodPreset_ = 0;
  bool lastGoodPresetValid_ = false;
  bool byMouse_ = false;  // the click to come belongs to a press that has been carried out
  bool menuIsOpen_ = false;
  bool held_ = false;
  bool inSelect_ = false, inSubBand_ = false, inPreset_ = false, inApplyPreset_ = false, inMenu_ = false,
       inTimer_ = false;
};

}  // namespace quorl
