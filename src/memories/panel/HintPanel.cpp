#include "memories/panel/HintPanel.h"

#include "interaction/PanelTexts.h"
#include "support/NumberPicture.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr int kAway = 16;  // pixels from the pointer

template <std::size_t N>
std::string CaptionOf(const std::array<ButtonText, N>& texts, std::int32_t index) {
  if (index < 0 || index >= static_cast<std::int32_t>(N)) return NumberText(index);
  std::string caption = texts[static_cast<std::size_t>(index)].Caption;
  std::erase(caption, '&');
  return caption;
}

// Year, month, day and hours, minutes of a stamp; a text that is none stands in both places as it is.
std::string DatePart(const std::string& when, bool time) {
  constexpr std::string_view kShape = "0000-00-00 00:00:00";
  bool fits = when.size() == kShape.size();
  for (std::size_t i = 0; fits && i < kShape.size(); ++i) {
    const bool digit = when[i] >= '0' && when[i] <= '9';
    fits = kShape[i] == '0' ? digit : when[i] == kShape[i];
  }
  if (!fits) return when;
  return time ? when.substr(11, 5) : when.substr(0, 4) + "/" + when.substr(5, 2) + "/" + when.substr(8, 2);
}

}  // namespace

HintPanel::HintPanel(ControlRegistry& registry)
    : frmPresetDesc(registry, "frmPresetDesc"),
      lblCaption(registry, "lblCaption"),
      lblPresetDesc(registry, "lblPresetDesc") {
  SetVisible(false);
}

void HintPanel::SetVisible(bool visible) {
  frmPresetDesc.Visible = visible;
  lblPresetDesc.Visible = visible;
}

void HintPanel::Toggle() {
  ShowPresetHints = !ShowPresetHints;
  SetVisible(ShowPresetHints && !lblPresetDesc.Text().empty());
}

void HintPanel::Hide() {
  SetVisible(false);
}

void HintPanel::Open(const std::string& caption, const std::string& text, const Control& button,
                     const MouseEvent& at) {
  if (!ShowPresetHints) return Hide();
  Place(button, at);
  lblCaption.Caption = lblPresetDesc.Heading = caption;
  lblPresetDesc.Caption = text;
  SetVisible(true);
}

void HintPanel::Say(const std::string& text, const Control& button) {
  Place(button, {});
  lblCaption.Caption = lblPresetDesc.Caption = text;
  lblPresetDesc.Heading = std::string();
  SetVisible(true);
}

void HintPanel::Place(const Control& button, const MouseEvent& at) {
  const PixelRect& place = button.Place();
  lblPresetDesc.Over = &button;
  lblPresetDesc.Left = static_cast<int>(at.X * place.Width) + kAway;
  lblPresetDesc.Top = static_cast<int>(at.Y * place.Height) + kAway;
}

void HintPanel::Show(const Preset& preset, const Control& button, const MouseEvent& at) {
  const TuningSettings& block = preset.Settings;
  Open(preset.Description,
       "Frequency=" + FormatPicture(block.FreqCurrent / 1000000.0, "#0.000 MHz") +
           "\nModulation=" + CaptionOf(DemodModeTexts, block.DemodMode) +
           "\nFilter=" + CaptionOf(FilterModeTexts, block.FilterMode) +
           "\nDate=" + DatePart(preset.When, false) + "\nTime=" + DatePart(preset.When, true),
       button, at);
}

void HintPanel::Show(const SubBand& band, const Control& button, const MouseEvent& at) {
  Open(band.Description,
       "Band=" + band.Caption + "\nFreq Lo=" + NumberText(band.FreqMin) +
           "\nFreq Hi=" + NumberText(band.FreqMax),
       button, at);
}

}  // namespace quorl
