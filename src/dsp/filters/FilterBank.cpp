#include "dsp/filters/FilterBank.h"

#include "dsp/filters/FilterDesign.h"

namespace quorl {

namespace {

struct FilterStart {
  clsFFTFilter FilterBank::*Filter;
  bool QPhase, NormaliseGain, BandReject;
  std::int32_t WindowType, FLow, FHigh;
  bool MakeAtStart;
};

constexpr std::int32_t kIFReach = 4500;
constexpr std::int32_t kIQLow = -1000, kIQHigh = 2 * IFCentre - 1000;

constexpr FilterStart kFilterStarts[] = {
    {&FilterBank::AFFilter, false, true, false, kBlackmanWindow, 100, 4500, true},
    {&FilterBank::DynFilter, false, true, false, kBlackmanWindow, 100, 4500, true},
    {&FilterBank::IFFilterI, false, false, false, kRectangularWindow, IFCentre - kIFReach,
     IFCentre + kIFReach, true},
    {&FilterBank::IFFilterQ, false, false, false, kRectangularWindow, IFCentre - kIFReach,
     IFCentre + kIFReach, true},
    {&FilterBank::IQFilterI, false, true, false, kBlackmanWindow, kIQLow, kIQHigh, true},
    {&FilterBank::IQFilterQ, true, true, false, kBlackmanWindow, kIQLow, kIQHigh, true},
    {&FilterBank::SSBFilterI, false, true, false, kBlackmanWindow, 300, 2300, false},
    {&FilterBank::SSBFilterQ, true, true, false, kBlackmanWindow, 300, 2300, false},
    {&FilterBank::NotchFilterI, false, true, true, kHammingWindow, 950, 1050, false},
    {&FilterBank::NotchFilterQ, false, true, true, kHammingWindow, 950, 1050, false},
};

constexpr std::int32_t kHilbertLength = 128;

}  // namespace

FilterBank::FilterBank(KernelSettings& settings)
    : AFFilter(settings),
      DynFilter(settings),
      IFFilterI(settings),
      IFFilterQ(settings),
      IQFilterI(settings),
      IQFilterQ(settings),
      SSBFilterI(settings),
      SSBFilterQ(settings),
      NotchFilterI(settings),
      NotchFilterQ(settings),
      FFTReal(settings) {}

void FilterBank::Initialise() {
  for (const FilterStart& start : kFilterStarts) {
    clsFFTFilter& filter = this->*start.Filter;
    filter.SegmentSize = SegmentSize;
    filter.Points = BlockPoints;
    filter.FSampling = FSampling;
    filter.QPhase = start.QPhase;
    filter.NormaliseGain = start.NormaliseGain;
    filter.BandReject = start.BandReject;
    filter.WindowType = start.WindowType;
    filter.FLow = start.FLow;
    filter.FHigh = start.FHigh;
    filter.init(BlockPoints);
    if (start.MakeAtStart) filter.MakeFilter();
  }
  HilbertI.Load(kHilbertLength, SamplesPerEvent);
  HilbertQ.Load(kHilbertLength, SamplesPerEvent);
}

void FilterBank::ActivateForMode(std::int32_t demodMode) {
  const bool demodulates = demodMode != DemodMode::DRM;
  const bool sideband = demodMode == DemodMode::USB || demodMode == DemodMode::LSB;
  AFFilter.Active = demodulates;
  IQFilterI.Active = IQFilterQ.Active = demodulates;
  SSBFilterI.Active = SSBFilterQ.Active = sideband;
}

}  // namespace quorl
