#include "display/scope/ScopeWaterfall.h"

#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr double kAxis = 64.0;  // pixels, at the left edge

}  // namespace

ScopeWaterfall::ScopeWaterfall(const ScopeContext& context, const ScopeOptions& options,
                               CanvasPicture& picture, const Clock& clock)
    : context_(context), options_(options), picture_(picture), clock_(clock) {
  picture_.OnSurfaces = [this] { Redraw(); };
  picture_.DblClick = [this](const MouseEvent& at) {
    if (at.X * picture_.Place().Width < kAxis) waterfall_.ScrollToPresent();
  };
}

void ScopeWaterfall::Apply() {
  WaterfallOptions wanted;
  wanted.On = options_.Waterfall;
  wanted.BlocksPerLine = options_.LineBlocks;
  wanted.Colours = static_cast<Palette>(options_.Palette);
  wanted.Top = context_.Analyser.LevelTop;
  wanted.Floor = context_.Analyser.LevelFloor;
  wanted.MarkSeconds = options_.TimeMarks;
  waterfall_.SetOptions(wanted);
}

void ScopeWaterfall::Add(const SpectrumLine& line) {
  waterfall_.Add(line, clock_.UtcMicroseconds());
}

void ScopeWaterfall::Redraw() {
  Canvas* hidden = front_ ? picture_.Surface0() : picture_.Surface1();
  Canvas* seen = front_ ? picture_.Surface1() : picture_.Surface0();
  if (!picture_.Visible() || hidden == nullptr || seen == nullptr) return;
  waterfall_.Draw(*hidden, context_.Analyser.Frequencies());
  hidden->SetVisible(true);
  seen->SetVisible(false);
  front_ = !front_;
}

std::optional<PastPoint> ScopeWaterfall::At(const ScopePlace& place) const {
  const auto time = &place.Picture == &picture_ ? waterfall_.TimeAt(place.At.Y) : std::nullopt;
  if (!time) return {};
  return PastPoint{UtcText(*time) + " UTC", waterfall_.LevelAt(place.At.Y, place.Hertz)};
}

bool ScopeWaterfall::IsOnAxis(const ScopePlace& place) const {
  return &place.Picture == &picture_ && place.At.Button == MouseButton::Left && place.PixelX() < kAxis;
}

bool ScopeWaterfall::Press(const ScopePlace& place) {
  if (!IsOnAxis(place)) return false;
  from_ = place.At.Y;
  scrolled_ = 0;
  return true;
}

// The lines go along with the pointer: upwards, older ones come into sight.
void ScopeWaterfall::Drag(const ScopePlace& place) {
  const std::int64_t lines = RoundHalfEven((from_ - place.At.Y) * waterfall_.Rows());
  waterfall_.ScrollBack(lines - scrolled_);
  scrolled_ = lines;
  Redraw();
}

}  // namespace quorl
