#include "memories/panel/PresetDialog.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "config/Inks.h"
#include "memories/TuningBlock.h"
#include "support/NumberPicture.h"
#include "support/Product.h"
#include "support/Rounding.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr std::array<const char*, 4> kModes{"AM", "USB", "LSB", "DRM"};
constexpr std::array<const char*, 5> kFilters{"Off", "400Hz", "2.4KHz", "3.2KHz", "4KHz"};
constexpr std::size_t kDateLength = 10, kTimeAt = 11, kTimeLength = 8;  // of a stamp
enum Value { kDescription, kFrequency, kDate, kTime };

// The number in a text with blanks, in hertz.
std::optional<std::int32_t> Hertz(std::string text) {
  std::erase(text, ' ');
  const auto hertz = ParseHertz(text);
  return hertz && *hertz >= 1 ? hertz : std::nullopt;
}

std::string Part(const std::string& text, std::size_t at, std::size_t length) {
  return at < text.size() ? text.substr(at, length) : std::string();
}

}  // namespace

PresetDialog::PresetDialog(ControlRegistry& registry)
    : frmEditUserPreset(registry, "frmEditUserPreset"),
      lblPresetIndex(registry, "frmEditUserPreset.lblPresetIndex"),
      txtPresetValues(registry, "frmEditUserPreset.txtPresetValues", 4),
      optDemodulationValue(registry, "frmEditUserPreset.optDemodulationValue",
                           static_cast<int>(kModes.size())),
      optFilteringValues(registry, "frmEditUserPreset.optFilteringValues", static_cast<int>(kFilters.size())),
      chkPresetTuneImage(registry, "frmEditUserPreset.chkPresetTuneImage"),
      cmdSave(registry, "frmEditUserPreset.cmdSave"),
      cmdCancel(registry, "frmEditUserPreset.cmdCancel") {
  frmEditUserPreset.Visible = false;
  for (std::size_t i = 0; i < kModes.size(); ++i)
    optDemodulationValue(static_cast<int>(i)).Caption = std::string(kModes[i]);
  for (std::size_t i = 0; i < kFilters.size(); ++i)
    optFilteringValues(static_cast<int>(i)).Caption = std::string(kFilters[i]);
  chkPresetTuneImage.Caption = "Low Side LO";
  txtPresetValues(kDescription).AccessibleName = "Description";
  txtPresetValues(kFrequency).AccessibleName = "Frequency";
  txtPresetValues(kDate).AccessibleName = "Date";
  txtPresetValues(kTime).AccessibleName = "Time";
  cmdCancel.Caption = "&Cancel";
  cmdSave.Click = [this] { cmdSave_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
  frmEditUserPreset.KeyDown = [this](const Key& key) {
    if (key.Code == Key::Escape) cmdCancel_Click();
    if (key.Code == Key::Enter) cmdSave_Click();
  };
}

void PresetDialog::Open(std::function<void()> accepted) {
  accepted_ = std::move(accepted);
  EditPresetAccepted = false;
  const TuningSettings& block = EditPreset.Settings;
  frmEditUserPreset.Caption = EditPresetTitle + " - " + kProductName;
  cmdSave.Caption = EditPresetButton;
  lblPresetIndex.Caption = NumberText(EditPreset.Index);
  txtPresetValues(kDescription).SetValue(EditPreset.Description);
  txtPresetValues(kFrequency).SetValue(FormatPicture(block.FreqCurrent, "### ### 000"));
  txtPresetValues(kFrequency).ForeColour = kNoColour;
  txtPresetValues(kFrequency).ToolTip = std::string("In hertz");
  txtPresetValues(kDate).SetValue(Part(EditPreset.When, 0, kDateLength));
  txtPresetValues(kTime).SetValue(Part(EditPreset.When, kTimeAt, kTimeLength));
  const auto choose = [](OptionGroup& group, std::int32_t index) {
    group.Press(index >= 0 && index < group.Count() ? index : -1);
  };
  choose(optDemodulationValue, block.DemodMode);
  choose(optFilteringValues, block.FilterMode);
  chkPresetTuneImage.SetValue(block.LowSideLO);
  frmEditUserPreset.Visible = true;
}

void PresetDialog::cmdSave_Click() {
  const auto hertz = Hertz(txtPresetValues(kFrequency).Value());
  if (!hertz) {
    txtPresetValues(kFrequency).ForeColour = kWrongInk;
    txtPresetValues(kFrequency).ToolTip = std::string("A frequency from 1 to 214748364 hertz is needed");
    return;
  }
  TuningSettings& block = EditPreset.Settings;
  EditPreset.Description = txtPresetValues(kDescription).Value();
  block.FreqCurrent = *hertz;
  EditPreset.When = std::string(Trim(txtPresetValues(kDate).Value() + " " + txtPresetValues(kTime).Value()));
  if (optDemodulationValue.Pressed() >= 0) block.DemodMode = optDemodulationValue.Pressed();
  if (optFilteringValues.Pressed() >= 0) block.FilterMode = optFilteringValues.Pressed();
  block.LowSideLO = chkPresetTuneImage.Value();
  block.HasLowSideLO = true;
  EditPreset.Caption = FormatPicture(RoundHalfEven(*hertz / 1000.0), "#0");
  EditPresetAccepted = true;
  Close();
  if (const auto accepted = std::exchange(accepted_, {})) accepted();
}

void PresetDialog::cmdCancel_Click() {
  EditPresetAccepted = false;
  accepted_ = {};
  Close();
}

void PresetDialog::Close() {
  frmEditUserPreset.Visible = false;
}

}  // namespace quorl
