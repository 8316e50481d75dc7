#include "dsp/fft/clsFFT.h"

#include <cmath>
#include <stdexcept>

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

namespace {

// Just below ln 2, so that the quotient of a power of two never falls under its whole number.
constexpr double kLn2 = 0.693147180559945;
constexpr float kPi = 3.14159265358979F;

}  // namespace

void clsFFT::SetUseSPL(bool use) {
  useSPL_ = use;
  settings_.UseSPL = use;
}

std::int32_t clsFFT::ReverseBits(std::int32_t value, std::int32_t order) {
  std::int32_t reversed = 0;
  for (std::int32_t bit = 0; bit < order; ++bit) {
    reversed = reversed * 2 + (value & 1);
    value /= 2;
  }
  return reversed;
}

void clsFFT::FFTInit(std::int32_t numPoints) {
  if (numPoints < 1 || numPoints > kMaxPoints) {
    throw std::invalid_argument("clsFFT: the number of points must lie between 1 and 16384");
  }
  IsInitialised = false;
  Points = numPoints;
  Order = static_cast<std::int32_t>(std::log(static_cast<double>(Points)) / kLn2);
  const auto count = static_cast<std::size_t>(Points);
  bitReverseTable_.resize(count);
  for (std::int32_t i = 0; i < Points; ++i)
    bitReverseTable_[static_cast<std::size_t>(i)] = ReverseBits(i, Order);
  cosTable_.assign(static_cast<std::size_t>(Order) + 1, 0.0F);
  sinTable_.assign(static_cast<std::size_t>(Order) + 1, 0.0F);
  for (std::int32_t stage = 1; stage <= Order; ++stage) {
    const double angle = static_cast<double>(kPi) / static_cast<double>((1 << stage) / 2);
    cosTable_[static_cast<std::size_t>(stage)] = static_cast<float>(std::cos(angle));
    sinTable_[static_cast<std::size_t>(stage)] = static_cast<float>(-std::sin(angle));
  }
  workReal_.assign(count, 0.0F);
  workImag_.assign(count, 0.0F);
  plan_.Build(1 << Order, Order, twiddles_);
  IsInitialised = true;
}

bool clsFFT::CheckInitialised() const {
  if (!IsInitialised) settings_.Report("clsFFT not initialised, you must call Init first");
  return IsInitialised;
}

void clsFFT::FFT_S_2(const float* realIn, const float* imagIn, float* realOut, float* imagOut) {
  if (!CheckInitialised()) return;
  quorl::FFT_S_2(plan_, realIn, imagIn, realOut, imagOut, workReal_.data(), workImag_.data());
}

void clsFFT::IFFT_S_2(const float* realIn, float* imagIn, float* realOut, float* imagOut) {
  if (!CheckInitialised()) return;
  const std::int32_t count = Points + 1;
  Negate_S(imagIn, count);
  FFT_S_2(realIn, imagIn, realOut, imagOut);
  Mpy_S_1(1.0F / static_cast<float>(count), realOut, count);
  NegateAndDiv_S_1(static_cast<float>(count), imagOut, count);
}

void clsFFT::FFTReference(const float* realIn, const float* imagIn, float* realOut, float* imagOut) const {
  for (std::int32_t i = 0; i < Points; ++i) {
    const std::int32_t at = bitReverseTable_[static_cast<std::size_t>(i)];
    realOut[at] = realIn[i];
    imagOut[at] = imagIn[i];
  }
  for (std::int32_t stage = 1; stage <= Order; ++stage) {
    const std::int32_t length = 1 << stage, half = length / 2;
    const float stepRe = cosTable_[static_cast<std::size_t>(stage)];
    const float stepIm = sinTable_[static_cast<std::size_t>(stage)];
    float re = 1.0F, im = 0.0F;
    for (std::int32_t j = 0; j < half; ++j) {
      for (std::int32_t i = j; i < Points; i += length) {
        const std::int32_t partner = i + half;
        const float turnedRe = re * realOut[partner] - im * imagOut[partner];
        const float turnedIm = re * imagOut[partner] + im * realOut[partner];
        realOut[partner] = realOut[i] - turnedRe;
        imagOut[partner] = imagOut[i] - turnedIm;
        realOut[i] += turnedRe;
        imagOut[i] += turnedIm;
      }
      const float nextRe = re * stepRe - im * stepIm;
      im = re * stepIm + im * stepRe;
      re = nextRe;
    }
  }
}

}  // namespace quorl
