// What hands do to the buttons and selectors of the memories.
#include <utility>

#include "memories/panel/MemoriesPanel.h"
#include "support/NumberPicture.h"
#include "support/Product.h"
#include "support/Rounding.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr Colour kPressed = 0xFFFF00, kReleased = 0xC0C0C0;
enum MenuItem { kEdit, kSave };

bool IsWithin(double x, const PixelRect& place) {
  return x >= place.Left && x < place.Left + place.Width;
}

}  // namespace

void MemoriesPanel::ConnectSelectors() {
  cboBandSelect.Visible = cboSubBandSelect.Visible = lstSubBandSelect.Visible = false;
  lstSubBandSelect.Enabled = false;
  cboBandSelect.ToolTip = std::string("Press Insert Key to Change BandName");
  cboBandSelect.Click = [this] { SelectBandPlan(cboBandSelect.ListIndex()); };
  cboBandSelect.KeyDown = [this](const Key& key) { cboBandSelect_KeyDown(key); };
  cboBandSelect.LostFocus = [this] { cboBandSelect.Visible = false; };
  cboSubBandSelect.LostFocus = [this] { cboSubBandSelect.Visible = false; };
  const auto chosen = [this](const ComboBox& list) {
    const int index = list.ListIndex();
    if (index < 0) return;
    lblSubBand.Caption = " " + list.Items()[static_cast<std::size_t>(index)] + " ";
    lblSubBand.Tag = NumberText(index);
  };
  cboSubBandSelect.Click = [this, chosen] {
    chosen(cboSubBandSelect);
    if (!inSubBand_) optSubBand_Click(cboSubBandSelect.ListIndex());
  };
  lstSubBandSelect.Click = [this, chosen] {
    chosen(lstSubBandSelect);
    if (!inSubBand_) optSubBand_Click(lstSubBandSelect.ListIndex());
  };
  frPresets.MouseMove = [this](const MouseEvent& at) { ShowSelectors(at); };
  lblSubBand.MouseMove = [this] {
    lblSubBand.Visible = false;
    cboSubBandSelect.Enabled = true;
    cboSubBandSelect.Visible = true;
    if (context_.Scrollables.GiveFocus) context_.Scrollables.GiveFocus(cboSubBandSelect);
  };
  for (Picture* picture : {&imgBandSelect, &picSubBands}) {
    picture->MouseMove = [this] {
      context_.Colours.UnFocusFrames();
      HideSelectors();
    };
  }
  imgBandSelect.ToolTip = std::string("Band plan");
  imgBandSelect.Caption = std::string("Plan");
  const auto open = [this] {
    cboBandSelect.Visible = true;
    if (context_.Scrollables.GiveFocus) context_.Scrollables.GiveFocus(cboBandSelect);
  };
  imgBandSelect.Click = open;
  imgBandSelect.DblClick = open;
  context_.Scrollables.AddDarkened([this] {
    Hints.Hide();
    HideSelectors();
  });
}

void MemoriesPanel::HideSelectors() {
  cboBandSelect.Visible = cboSubBandSelect.Visible = lstSubBandSelect.Visible = false;
  lblSubBand.Visible = true;
}

// The selectors surface where the pointer passes along the frame's top edge.
void MemoriesPanel::ShowSelectors(const MouseEvent& at) {
  context_.Colours.Frame_MouseMove(frPresets);
  HideSelectors();
  lstSubBandSelect.Enabled = false;
  const PixelRect& frame = frPresets.Place();
  const double x = at.X * frame.Width, y = at.Y * frame.Height;
  const auto passes = [x, y](const Control& selector) {
    const PixelRect& place = selector.Place();
    return IsWithin(x, place) && y <= place.Height / 2.0;
  };
  cboBandSelect.Visible = passes(cboBandSelect);
  for (ComboBox* selector : {&cboSubBandSelect, static_cast<ComboBox*>(&lstSubBandSelect)}) {
    if (!selector->Enabled() || !passes(*selector)) continue;
    selector->Visible = true;
    lblSubBand.Visible = false;
  }
  Hints.Hide();
}

void MemoriesPanel::ConnectButtons() {
  optSubBand.Repeats = optPreset.Repeats = true;
  for (int i = 0; i < optSubBand.Count(); ++i) {
    optSubBand(i).MouseDown = [this, i](const MouseEvent& at) { optSubBand_MouseDown(i, at.Button); };
    optSubBand(i).MouseMove = [this, i](const MouseEvent& at) {
      HideSelectors();
      if (const BandPlan* plan = Plan())
        Hints.Show(plan->SubBands[static_cast<std::size_t>(i)], optSubBand(i), at);
    };
  }
  optSubBand.Click = [this](int index) {
    if (!std::exchange(byMouse_, false)) optSubBand_Click(index);
  };
  for (int i = 0; i < optPreset.Count(); ++i) {
    OptionButton& button = optPreset(i);
    button.MouseDown = [this, i](const MouseEvent& at) {
      menuIsOpen_ = false;
      byMouse_ = at.Button == MouseButton::Left;
      optPreset_MouseDown(i, at.Button, at.With);
    };
    button.MouseUp = [this, i](const MouseEvent& at) {
      if (!menuIsOpen_) optPreset_MouseDown(i, at.Button, at.With);
    };
    button.MouseMove = [this, i](const MouseEvent& at) {
      if (const SubBand* band = Band())
        Hints.Show(band->Presets[static_cast<std::size_t>(i)], optPreset(i), at);
    };
    keys_.push_back(button.KeyDown.Listen([this, i](const Key& key) { optPreset_KeyDown(i, key); }));
  }
  // The keyboard's click is a left click; a hand's has been carried out when the button went down.
  optPreset.Click = [this](int index) {
    if (inPreset_ || inSelect_ || inSubBand_) return;
    const SubBand* band = Band();
    if (!std::exchange(byMouse_, false)) {
      optPreset_MouseDown(index, MouseButton::Left, {});
    } else if (band) {
      const ScopedFlag quiet(inPreset_);
      optPreset.Press(band->ActivePreset);
    }
  };
  mnuUserPresets.Click = [this](int item) {
    menuIsOpen_ = false;
    item == kEdit ? mnuUserPresets_Edit_Click() : mnuUserPresets_Save_Click();
  };
}

// Beside what the view's keys do: Enter and Space are a left click.
void MemoriesPanel::optPreset_KeyDown(std::int32_t index, const Key& key) {
  if (key.Code == Key::Control) Hints.Toggle();
  if (key.Code == Key::Enter && key.With.Shift)
    optPreset_MouseDown(index, MouseButton::Right, {.Shift = true});
}

void MemoriesPanel::optSubBand_MouseDown(std::int32_t index, MouseButton button) {
  BandPlan* plan = Plan();
  if (!plan) return;
  byMouse_ = false;
  PaintSubBands(kReleased, index, kPressed);
  plan->ActiveSubBand = index;
  if (button == MouseButton::Left) {
    optSubBand_Click(index);
    byMouse_ = true;
  } else if (button == MouseButton::Right) {
    const ScopedFlag quiet(inSubBand_);
    optSubBand.Press(index);
    RenameSubBand(index);
  }
}

// The selectors keep the old name until the plan is selected again.
void MemoriesPanel::RenameSubBand(std::int32_t index) {
  SubBand& band = Plan()->SubBands[static_cast<std::size_t>(index)];
  const auto name = machine_.Boxes.AskText(kProductName, "Enter SubBand Name", band.Caption);
  if (!name || name->empty() || name->find_first_of("\r\n") != std::string::npos) return;
  band.Caption = *name;
  optSubBand(index).Caption = *name;
}

void MemoriesPanel::cboBandSelect_KeyDown(const Key& key) {
  const int index = cboBandSelect.ListIndex();
  if (key.Code != Key::Insert || index < 0) return;
  BandPlan& plan = BandPlans[static_cast<std::size_t>(index)];
  const auto name = machine_.Boxes.AskText(kProductName, "Enter New Band Plan Name", plan.Caption);
  if (!name || name->empty() || name->find_first_of("\r\n") != std::string::npos) return;
  plan.Caption = *name;
  const ScopedFlag quiet(inSelect_);
  FillBandSelect();
  cboBandSelect.SetListIndex(index);
}

void MemoriesPanel::OpenMenu(const SubBand& band) {
  const Preset& preset = band.Presets[static_cast<std::size_t>(band.ActivePreset)];
  mnuUserPresets.SetItemEnabled(kEdit, preset.Settings.FreqCurrent >= 1);
  menuIsOpen_ = true;
  mnuUserPresets.PopUp();
}

void MemoriesPanel::mnuUserPresets_Save_Click() {
  const Preset* preset = ActivePreset();
  if (inMenu_ || !preset) return;
  const ScopedFlag choosing(inMenu_);
  Preset& edited = Dialog.EditPreset = *preset;
  if (Memory.SafeMemories) Memory.CaptureSettings(edited.Settings);
  const PublicVars& vars = context_.Rx.Vars;
  edited.When = StampText(machine_.Time.Now());
  edited.Settings.DemodMode = vars.CurrentDemodMode;
  edited.Settings.FilterMode = vars.CurrentFilterMode;
  edited.Settings.FreqCurrent = RoundHalfEven(links_.Tuned() / 10.0);
  edited.Settings.HiSideLO = !vars.LowSideLO;
  Dialog.EditPresetTitle = "Save Current Settings to Preset " + NumberText(edited.Index);
  Dialog.EditPresetButton = "&Save";
  OpenDialog(false);
}

void MemoriesPanel::mnuUserPresets_Edit_Click() {
  const Preset* preset = ActivePreset();
  if (inMenu_ || !preset || preset->Settings.FreqCurrent < 1) return;
  const ScopedFlag choosing(inMenu_);
  Dialog.EditPreset = *preset;
  Dialog.EditPresetTitle = "Edit Preset " + NumberText(preset->Index);
  Dialog.EditPresetButton = "&Update";
  OpenDialog(true);
}

void MemoriesPanel::OpenDialog(bool edits) {
  Dialog.EditPresetIsEdit = edits;
  // The one that it was opened for, whatever is chosen meanwhile.
  const auto plan = static_cast<std::size_t>(context_.Rx.Vars.CurrentMainBandIndex);
  const auto band = static_cast<std::size_t>(Plan()->ActiveSubBand);
  const auto preset = static_cast<std::size_t>(Band()->ActivePreset);
  Dialog.Open([this, plan, band, preset] { TakeDialog(plan, band, preset); });
}

void MemoriesPanel::TakeDialog(std::size_t plan, std::size_t band, std::size_t preset) {
  Preset& target = BandPlans[plan].SubBands[band].Presets[preset];
  target = Dialog.EditPreset;
  if (Memory.SafeMemories) target.Settings.Changed = true;
  if (Band() != &BandPlans[plan].SubBands[band]) return;
  const auto index = static_cast<int>(preset);
  const double kilohertz = target.Settings.FreqCurrent / 1000.0;
  optPreset(index).Caption = Dialog.EditPresetIsEdit ? FormatPicture(kilohertz, "#0")
                                                     : FormatPicture(RoundHalfEven(kilohertz), "0#");
  optPreset(index).ToolTip = target.Description;
  const ScopedFlag quiet(inPreset_);
  optPreset.Press(index);
  ApplyPresetSettings(target);
  links_.Changed();
}

}  // namespace quorl
