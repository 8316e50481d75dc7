#include "display/analyser/NotchMarks.h"

namespace quorl {

NotchMarks PlaceNotch(const PublicVars& vars, const ScopeBand& band) {
  NotchMarks marks;
  const auto add = [&](double from, double to) {
    marks.Bands[static_cast<std::size_t>(marks.Count++)] = {from, to};
  };
  const bool onIF = vars.NotchType == NotchTypes::IF;
  const double low = vars.NotchLo, high = vars.NotchHi;
  if (onIF == band.OnAir) {
    add(band.PictureBin(band.BinOf(low)), band.PictureBin(band.BinOf(high)));
  } else if (band.OnAir) {
    const double zeroBeat = (band.TunedFrequency() - band.Offset + vars.BFOOffset) / kScopeHertzPerBin;
    const double from = low / kScopeHertzPerBin, to = high / kScopeHertzPerBin;
    const std::int32_t mode = vars.CurrentDemodMode;
    const bool both = mode == DemodMode::AM || mode == DemodMode::BC;
    if (both || mode == DemodMode::USB) add(zeroBeat + from, zeroBeat + to);
    if (both || mode == DemodMode::LSB) add(zeroBeat - from, zeroBeat - to);
  }
  return marks;
}

}  // namespace quorl
