#include "dsp/chain/Demodulators.h"

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

Demodulators::Demodulators(FilterBank& filters)
    : filters_(filters),
      fmPhase_(SamplesPerEvent),
      fmMagnitude_(SamplesPerEvent),
      bcSquares_(SamplesPerEvent + kBCWindow - 1) {}

void Demodulators::DemodSSB(float* i, float* q, float* out, bool add) {
  filters_.SSBFilterI.Filter_FFT_S_1(i);
  filters_.SSBFilterQ.Filter_FFT_S_1(q);
  add ? Add_S_3(i, q, out, SamplesPerEvent) : Sub_S_3(i, q, out, SamplesPerEvent);
}

void Demodulators::DemodAM(const float* i, const float* q, float* out) {
  PowerSpectrum_S_2(i, q, out, SamplesPerEvent);
  filters_.AFFilter.Filter_FFT_S_1(out);
}

void Demodulators::DemodBC(float* in, float* out, std::int32_t n) {
  constexpr std::int32_t kHistory = kBCWindow - 1;
  Sqr_S_1(in, n);
  CopyVector_S(in, bcSquares_.data() + kHistory, n);
  MovingRoot_S_2(bcSquares_.data(), out, kBCWindow, 1.0F / kBCWindow, n);
  CopyVector_S(bcSquares_.data() + n, bcSquares_.data(), kHistory);
  filters_.AFFilter.Filter_FFT_S_1(out);
}

void Demodulators::DemodFM(const float* i, const float* q, float* out) {
  constexpr std::int32_t kLast = SamplesPerEvent - 1;
  constexpr float kCarrierStep = 1.5707963F;  // radians per sample at a quarter of the sampling rate
  constexpr float kScale = 4096.0F;
  CartToPolar_S_2(i, q, fmMagnitude_.data(), fmPhase_.data(), SamplesPerEvent);
  Sub_S_3(fmPhase_.data() + 1, fmPhase_.data(), out + 1, kLast);
  out[0] = fmPhase_[0] - fmLastPhase_;
  Abs_S_1(out, SamplesPerEvent);
  Sub_S_1(kCarrierStep, out, SamplesPerEvent);
  Mpy_S_1(kScale, out, SamplesPerEvent);
  fmLastPhase_ = fmPhase_[kLast];
  filters_.AFFilter.Filter_FFT_S_1(out);
}

}  // namespace quorl
