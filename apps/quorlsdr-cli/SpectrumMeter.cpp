#include "SpectrumMeter.h"

#include <algorithm>
#include <cmath>

namespace quorl::cli {

SpectrumMeter::SpectrumMeter(Receiver& receiver, const SpectrumSettings& settings)
    : receiver_(receiver), settings_(settings), analyser_(receiver.Settings, receiver.Vars, [] {}) {
  analyser_.init();
  analyser_.Active = true;
  analyser_.Freeze = false;
  analyser_.SpectrumSource = settings.Source;
  analyser_.Window = settings.Window;
  analyser_.TwoSided = true;  // where the board has I and Q
  analyser_.SetFastMode(true);
  analyser_.SetChn2Enabled(false);
  analyser_.OnLine = [this](const SpectrumLine& line) { TakeLine(line); };
  receiver_.Tap.Analyser = &analyser_;
}

SpectrumMeter::~SpectrumMeter() {
  receiver_.Tap.Analyser = nullptr;
}

// The middle of the band is 12 kHz of a real IF, and 0 Hz of I and Q, whose spectrum is made of I - jQ: it
// runs downwards until the low side of the oscillator turns it.
void SpectrumMeter::PlaceBand(std::size_t bins) {
  const bool twoSided = bins > clsSpectrumAnalyser::kBins;
  const std::int32_t half = twoSided ? FSampling / 2 : FSampling / 4;
  const bool placed = settings_.Centre.has_value();
  ascending_ = placed ? receiver_.Vars.LowSideLO : !twoSided;
  frequencies_ = {analyser_.HertzPerBin(),
                  placed     ? *settings_.Centre - half
                  : twoSided ? -half
                             : 0,
                  0, static_cast<std::int32_t>(bins), placed};
}

void SpectrumMeter::TakeLine(const SpectrumLine& line) {
  const std::size_t bins = line.Bins.size();
  if (blocks_ == 0) {
    PlaceBand(bins);
    sums_.assign(bins, 0.0);
    peaks_.assign(bins, 0.0);
  }
  for (std::size_t bin = 0; bin < bins; ++bin) {
    const double power = static_cast<double>(line.Bins[bin]) * static_cast<double>(line.Bins[bin]);
    sums_[bin] += power;
    peaks_[bin] = std::max(peaks_[bin], power);
  }
  ++blocks_;
  lines_.Add(line.Bins);
}

std::vector<SpectrumMeter::Point> SpectrumMeter::Points(const std::vector<double>& powers,
                                                        double blocks) const {
  std::vector<Point> points;
  points.reserve(powers.size());
  const double fullScale = 32768.0 * static_cast<double>(powers.size());
  for (std::size_t bin = 0; bin < powers.size(); ++bin) {
    const std::size_t element = ascending_ ? bin : powers.size() - 1 - bin;
    const double place = static_cast<double>(ascending_ ? bin : bin + 1);
    const double power = powers[element] / blocks / (fullScale * fullScale);
    points.push_back(
        {frequencies_.FrequencyAt(place), std::max(static_cast<float>(10.0 * std::log10(power)), kSilence)});
  }
  return points;
}

}  // namespace quorl::cli
