// One filter object with its settings, for tests of convolution and design.
#pragma once

#include "dsp/Signals.h"
#include "dsp/filters/FilterDesign.h"
#include "dsp/filters/clsFFTFilter.h"

namespace quorl::test {

struct FilterRig {
  explicit FilterRig(std::int32_t points = 2048, std::int32_t window = kBlackmanWindow) {
    Filter.Points = points;
    Filter.SegmentSize = 2 * points;
    Filter.FSampling = 48000;
    Filter.WindowType = window;
    Filter.NormaliseGain = true;
    Filter.init(points);
  }

  void Make(std::int32_t low, std::int32_t high, bool quadrature = false, bool reject = false) {
    Filter.FLow = low;
    Filter.FHigh = high;
    Filter.QPhase = quadrature;
    Filter.BandReject = reject;
    Filter.MakeFilter();
  }

  std::vector<double> Taps() const {
    std::vector<double> taps(static_cast<std::size_t>(Filter.Points));
    Filter.GetFilterTCoeffs_D(taps.data());
    return taps;
  }

  // Gain at `hertz` of what the running path multiplies by, dB.
  double GainAt(double hertz) const { return Decibels(std::abs(ResponseAt(Taps(), hertz))); }

  // `in` through the filter, block by block.
  SampleBuffer Run(const SampleBuffer& in) {
    const auto points = static_cast<std::size_t>(Filter.Points);
    SampleBuffer out, block(2 * points);
    for (std::size_t at = 0; at + points <= in.size(); at += points) {
      std::copy_n(in.begin() + static_cast<std::ptrdiff_t>(at), points, block.begin());
      std::fill(block.begin() + static_cast<std::ptrdiff_t>(points), block.end(), 1e6F);  // stale
      Filter.Filter_FFT_S_1(block.data());
      out.insert(out.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(points));
    }
    return out;
  }

  KernelSettings Settings;
  clsFFTFilter Filter{Settings};
};

}  // namespace quorl::test
