#include "display/scope/ScopePointer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "display/scope/ScopePassband.h"
#include "support/NumberPicture.h"
#include "support/Text.h"

namespace quorl {

namespace {

constexpr double kTenths = 10.0;         // of the height
constexpr std::int32_t kPerTenth = 100;  // Hz for a notch of the wheel
constexpr std::int32_t kLeastStep = 10;  // Hz
constexpr int kBesidePointer = 17;       // pixels
constexpr int kLetter = 8;               // pixels, of a label that nobody shows

constexpr double kZoomStep = 1.25, kPanStep = 0.125;

}  // namespace

ScopePointer::ScopePointer(const ScopeContext& context, const ScopeOptions& options, ScopeWindow& window,
                           CanvasPicture& scope, CanvasPicture& waterfall)
    : lblSpectrumFreq(context.Panel.Registry, "lblSpectrumFreq"),
      context_(context),
      options_(options),
      window_(window) {
  lblSpectrumFreq.Visible = false;
  sized_ = lblSpectrumFreq.Resized.Listen([this] { PlaceFrequency(); });
  for (CanvasPicture* picture : {&scope, &waterfall}) Connect(*picture);
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  scrollables.BindKeys(CtlIndex::PicScope, scope);
  scrollables(CtlIndex::PicScope).OnChange = [this] { picScope_Step(); };
  scrollables.AddDarkened([this] {
    over_ = nullptr;
    lblSpectrumFreq.Visible = false;
  });
}

void ScopePointer::Connect(CanvasPicture& picture) {
  picture.MouseMove = [this, &picture](const MouseEvent& at) { picScope_MouseMove(picture, at); };
  picture.MouseDown = [this, &picture](const MouseEvent& at) { picScope_MouseDown(picture, at); };
  picture.MouseUp = [this, &picture](const MouseEvent& at) {
    if (held_ == nullptr || std::exchange(held_, nullptr)->Release()) return;
    if (at.Button == MouseButton::Left && IsTunable()) Tune(PlaceOf(picture, at));
  };
  picture.DblClick = [] {};  // its first press has tuned
  picture.Wheel = [this, &picture](int notches, const MouseEvent& at) {
    picScope_Wheel(picture, notches, at);
  };
}

void ScopePointer::SetWheelTunes(bool tunes) {
  wheelTunes_ = tunes;
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  scrollables(CtlIndex::PicScope).NoFocus = !tunes;
  if (!tunes && scrollables.ActiveCtl() == CtlIndex::PicScope) scrollables.LeaveControl();
}

ScopePlace ScopePointer::PlaceOf(const CanvasPicture& picture, const MouseEvent& at) const {
  ScopePlace place{picture, at, context_.Analyser.Frequencies(), 0.0};
  place.Hertz = place.Scale.FrequencyAt(at.X * place.Scale.Width());
  return place;
}

bool ScopePointer::IsTunable() const {
  const clsSpectrumAnalyser& analyser = context_.Analyser;
  const FrequencyScale scale = analyser.Frequencies();
  return analyser.Mode() == ScopeMode::Frequency && scale.OnAir && analyser.FStart < scale.Offset;
}

void ScopePointer::picScope_MouseMove(CanvasPicture& picture, const MouseEvent& at) {
  if (held_ != nullptr) {
    held_->Drag(PlaceOf(picture, at));
    return;
  }
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  if (wheelTunes_) {
    scrollables.Point(CtlIndex::PicScope);
    TakeStep(at.Y);
  } else {
    scrollables.DarkenControls();
  }
  over_ = &picture;
  at_ = at;
  Renew();
  if (OnHover) OnHover(PlaceOf(picture, at));
}

// The lower the pointer, the further a notch.
void ScopePointer::TakeStep(double share) {
  const std::int32_t tenths = RoundDown(std::clamp(share, 0.0, 1.0) * kTenths + 0.5);
  const std::int32_t hertz = std::max(tenths * kPerTenth, kLeastStep);
  context_.Panel.Scrollables(CtlIndex::PicScope).Format = NumberText(hertz);
  context_.Links.TakeStep(hertz * 10.0);
}

void ScopePointer::Renew() {
  if (over_ == nullptr) return;
  TakeFrequency(*over_);
  ShowFrequency();
}

void ScopePointer::TakeFrequency(CanvasPicture& picture) {
  if (context_.Analyser.Mode() != ScopeMode::Frequency) {
    picture.Tag = std::string();
    return;
  }
  picture.Tag = NumberText(PlaceOf(picture, at_).Hertz + 0.5);
}

void ScopePointer::ShowFrequency() {
  const std::optional<double> hertz = ParseDouble(over_->Tag());
  const bool shown = hertz && !context_.Analyser.HideFreqToolTip;
  if (shown) {
    std::string text = FormatPicture(RoundDown(*hertz), "#0 000 000");
    if (wheelTunes_) {
      const std::string& step = context_.Panel.Scrollables(CtlIndex::PicScope).Format;
      text += " : " + FormatPicture(ParseDouble(step).value_or(0.0), "###0");
    }
    lblSpectrumFreq.Caption = text;
    lblSpectrumFreq.Over = over_;
    PlaceFrequency();
  }
  lblSpectrumFreq.Visible = shown;
}

// Beside the pointer, and whole within the picture.
void ScopePointer::PlaceFrequency() {
  if (over_ == nullptr) return;
  const bool unseen = lblSpectrumFreq.Place() == Control::kUnseen;
  const int width =
      unseen ? kLetter * static_cast<int>(lblSpectrumFreq.Caption().size()) : lblSpectrumFreq.Place().Width;
  const PixelRect& picture = over_->Place();
  int left = RoundHalfEven(at_.X * picture.Width) + kBesidePointer;
  if (left + width > picture.Width) left = picture.Width - width;
  lblSpectrumFreq.Left = left;
  lblSpectrumFreq.Top = RoundHalfEven(at_.Y * picture.Height);
}

void ScopePointer::picScope_MouseDown(CanvasPicture& picture, const MouseEvent& at) {
  if (at.Button == MouseButton::Right) {
    if (OnMenu) OnMenu();
    return;
  }
  const ScopePlace place = PlaceOf(picture, at);
  for (ScopeGrip* grip : Grips) {
    if (!grip->Press(place)) continue;
    held_ = grip;
    lblSpectrumFreq.Visible = false;
    return;
  }
  if (at.Button == MouseButton::Left && IsTunable()) Tune(place);
}

void ScopePointer::Tune(const ScopePlace& place) {
  const std::optional<double> tag = ParseDouble(place.Picture.Tag());
  if (!tag) return;
  double hertz = std::trunc(*tag);
  if (options_.Gestures && place.At.With.Shift) {
    const double step = context_.Links.TuneStep() / 10.0;
    if (step > 0.0) hertz = std::round(hertz / step) * step;
  } else if (options_.Gestures && place.At.With.Ctrl) {
    hertz -= MiddleOfPassband(context_.Vars());
  }
  context_.Links.TuneTo(RoundHalfEven(hertz * 10.0));
}

void ScopePointer::picScope_Wheel(CanvasPicture& picture, int notches, const MouseEvent& at) {
  const Modifiers& with = at.With;
  const bool shapes = options_.Gestures && (with.Ctrl || with.Shift || !wheelTunes_);
  if (shapes) {
    with.Shift && !with.Ctrl ? window_.Pan(-kPanStep * notches)
                             : window_.Zoom(notches > 0 ? 1.0 / kZoomStep : kZoomStep, at.X);
    Renew();
  } else if (wheelTunes_) {
    picScope_MouseMove(picture, at);
    context_.Panel.Scrollables.Wheel(notches, with);
  }
}

// One notch, or one key: the entry's value says which way, and rests at 0.
void ScopePointer::picScope_Step() {
  ScrollableControl& entry = context_.Panel.Scrollables(CtlIndex::PicScope);
  const int direction = entry.Value > 0.0F ? 1 : entry.Value < 0.0F ? -1 : 0;
  entry.Value = 0.0F;
  if (direction != 0) context_.Links.StepByRate(direction);
}

}  // namespace quorl
