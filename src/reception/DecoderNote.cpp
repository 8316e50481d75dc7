#include "reception/DecoderNote.h"

#include <utility>

#include "config/Inks.h"

namespace quorl {

namespace {

constexpr const char* kOwn = ", and it comes back with another mode";
constexpr const char* kAdvice =
    ": it wants the band as it comes, without noise blanker, IF filter, notch, dynamic filter and AGC";

}  // namespace

DecoderNote::DecoderNote(const PanelContext& context)
    : lblDecoder(context.Registry, "lblDecoder"), context_(context) {
  Show();
  listening_ = context_.Rx.Changed.Listen([this] { Show(); });
}

void DecoderNote::SetSoundReleased(bool released) {
  released_ = released;
  Show();
}

// What runs, in the order in which a signal comes by. The blanker is for a real IF.
std::string DecoderNote::Between() const {
  const PublicVars& vars = context_.Rx.Vars;
  const FilterBank& filters = context_.Rx.Filters;
  const bool real = vars.SDRModelNo != SDRModel::IQXtalRX && vars.SDRModelNo != SDRModel::RealToIQRX;
  std::string words;
  for (const auto& [runs, word] :
       {std::pair{vars.NBOn && real, "NB"}, std::pair{filters.IFFilterI.Active, "IF filter"},
        std::pair{filters.NotchFilterI.Active, "notch"}, std::pair{filters.DynFilter.Active, "dyn"},
        std::pair{vars.AGCON, "AGC"}}) {
    if (runs) words += (words.empty() ? "" : ", ") + std::string(word);
  }
  return words;
}

void DecoderNote::Show() {
  const bool drm = context_.Rx.Vars.CurrentDemodMode == DemodMode::DRM;
  const std::string between = Between();
  lblDecoder.Caption = released_ ? "The decoder has the sound card" : "Decoder hears through " + between;
  // A narrow window has room for half of it.
  lblDecoder.ToolTip = lblDecoder.Caption() + (released_ ? kOwn : kAdvice);
  lblDecoder.ForeColour = released_ ? context_.Colours.Scheme().SDRLabelColour : kCautionInk;
  lblDecoder.Visible = drm && (released_ || !between.empty());
}

}  // namespace quorl
