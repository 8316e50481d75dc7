#include "dsp/filters/clHilbert.h"

#include <algorithm>
#include <cmath>

#include "dsp/kernel/VectorKernel.h"
#include "support/Rounding.h"

namespace quorl {

void clHilbert::Load(std::int32_t nzeros, std::int32_t blockSize) {
  Nzeros = nzeros;
  Delay = RoundHalfEven(nzeros / 2.0);
  const auto taps = static_cast<std::size_t>(nzeros);
  dCoefs_.assign(taps + 1, 0.0);
  sCoefs_.assign(taps + 1, 0.0F);
  sHistory_.assign(taps + 2 + static_cast<std::size_t>(blockSize), 0.0F);
  dDelayLine_.assign(static_cast<std::size_t>(Delay), 0.0);
  sDelayLine_.assign(static_cast<std::size_t>(Delay), 0.0F);
  double gain = 1.0;
  CalcCoefficients(nzeros, dCoefs_.data(), gain);
  sGain = static_cast<float>(1.0 / gain);
  DoubleToSingle_D_2(dCoefs_.data(), sCoefs_.data(), nzeros);
}

void clHilbert::CalcCoefficients(std::int32_t numPoints, double* coefficients, double& gain) {
  const std::int32_t last = numPoints - 1, centre = RoundHalfEven(last / 2.0);
  coefficients[centre] = 0.0;
  for (std::int32_t i = 1; i < centre; ++i) {
    const double tap = i % 2 == 1 ? 1.0 / i : 0.0;
    // One window value for both sides, so that the pair stays exactly antisymmetric.
    const double window = 0.54 - 0.46 * std::cos((centre + i) * 6.28318530717958 / last);
    coefficients[centre + i] = -tap * window;
    coefficients[centre - i] = tap * window;
  }
  gain = 0.0;
  bool add = false;
  for (std::int32_t j = 1; j < centre; j += 2) {
    gain += add ? coefficients[j] : -coefficients[j];
    add = !add;
  }
  if (add) gain = -gain;
  gain += gain;
}

void clHilbert::sTransform(const float* samplesIn, float* samplesOut, std::int32_t count) {
  CopyVector_S(samplesIn, sHistory_.data() + Nzeros, count);
  sHilbert(sHistory_.data(), sCoefs_.data(), samplesOut, Nzeros, count);
  std::copy_n(sHistory_.data() + count, Nzeros, sHistory_.data());
  Mpy_S_1(sGain, samplesOut, count);
}

namespace {

template <typename T>
void RunDelay(std::vector<T>& line, const T* in, T* out, std::int32_t count) {
  const auto delay = static_cast<std::int32_t>(line.size());
  std::copy_n(line.data(), delay, out);
  std::copy_n(in, count - delay, out + delay);
  std::copy_n(in + count - delay, delay, line.data());
}

}  // namespace

void clHilbert::sDelaySamples(const float* samplesIn, float* samplesOut, std::int32_t count) {
  RunDelay(sDelayLine_, samplesIn, samplesOut, count);
}

void clHilbert::DelaySamples(const double* samplesIn, double* samplesOut, std::int32_t count) {
  RunDelay(dDelayLine_, samplesIn, samplesOut, count);
}

void clHilbert::GetCoefs(double* coefficients, std::int32_t count) const {
  std::copy_n(dCoefs_.data(), count, coefficients);
}
void clHilbert::sGetCoefs(float* coefficients, std::int32_t count) const {
  std::copy_n(sCoefs_.data(), count, coefficients);
}
void clHilbert::sSetCoefs(const float* coefficients, std::int32_t count) {
  std::copy_n(coefficients, count, sCoefs_.data());
}
void clHilbert::dSetCoefs(const double* coefficients, std::int32_t count) {
  std::copy_n(coefficients, count, dCoefs_.data());
}

}  // namespace quorl
