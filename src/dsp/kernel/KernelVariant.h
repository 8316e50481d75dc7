// The kernel's routines, compiled once for each instruction set: a variant defines QUORL_KERNEL_NAME and
// QUORL_KERNEL_SET and includes this file.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "dsp/kernel/KernelTable.h"

// No element of such a loop depends on another one's result; sources and destination may be the same vector.
#if defined(__clang__)
#define QUORL_INDEPENDENT _Pragma("clang loop vectorize(assume_safety)")
#else
#define QUORL_INDEPENDENT _Pragma("GCC ivdep")
#endif

namespace quorl {
namespace {

#include "dsp/kernel/Lanes.h"

#define QUORL_EACH QUORL_INDEPENDENT for (std::int32_t i = 0; i < n; ++i)

void Mpy_S_1(float c, float* v, std::int32_t n) {
  QUORL_EACH v[i] *= c;
}
void Mpy_S_2(const float* a, float* v, std::int32_t n) {
  QUORL_EACH v[i] *= a[i];
}
void Mpy_S_3(const float* a, const float* b, float* out, std::int32_t n) {
  QUORL_EACH out[i] = a[i] * b[i];
}
void Mpy_D_1(double c, double* v, std::int32_t n) {
  QUORL_EACH v[i] *= c;
}
void Mpy_D_2(const double* a, double* v, std::int32_t n) {
  QUORL_EACH v[i] *= a[i];
}
void Add_S_1(float c, float* v, std::int32_t n) {
  QUORL_EACH v[i] += c;
}
void Add_S_2(const float* a, float* v, std::int32_t n) {
  QUORL_EACH v[i] += a[i];
}
void Add_S_3(const float* a, const float* b, float* out, std::int32_t n) {
  QUORL_EACH out[i] = a[i] + b[i];
}
void Add_D_2(const double* a, double* v, std::int32_t n) {
  QUORL_EACH v[i] += a[i];
}
void Sub_S_1(float c, float* v, std::int32_t n) {
  QUORL_EACH v[i] = c - v[i];
}
void Sub_S_3(const float* a, const float* b, float* out, std::int32_t n) {
  QUORL_EACH out[i] = a[i] - b[i];
}
void Negate_S(float* v, std::int32_t n) {
  QUORL_EACH v[i] = -v[i];
}
void NegateAndDiv_S_1(float divisor, float* v, std::int32_t n) {
  QUORL_EACH v[i] = -v[i] / divisor;
}
void Abs_S_1(float* v, std::int32_t n) {
  QUORL_EACH v[i] = __builtin_fabsf(v[i]);
}
void Sqr_S_1(float* v, std::int32_t n) {
  QUORL_EACH v[i] *= v[i];
}
void Sqr_S_2(const float* in, float* out, std::int32_t n) {
  QUORL_EACH out[i] = in[i] * in[i];
}

float Sum_S_1(const float* v, std::int32_t n) {
  Wide sums{};
  std::int32_t i = 0;
  for (; i + kWide <= n; i += kWide) sums += LoadWide(v + i);
  float sum = 0.0F;
  for (int lane = 0; lane < kWide; ++lane) sum += sums[lane];
  for (; i < n; ++i) sum += v[i];
  return sum;
}
double Sum_D_1(const double* v, std::int32_t n) {
  double sum = 0.0;
  for (std::int32_t i = 0; i < n; ++i) sum += v[i];
  return sum;
}
template <typename Integer>
double SumIntegers(const Integer* v, std::int32_t n) {
  std::int64_t sum = 0;
  for (std::int32_t i = 0; i < n; ++i) sum += v[i];
  return static_cast<double>(sum);
}
double Sum_Int16_1(const std::int16_t* v, std::int32_t n) {
  return SumIntegers(v, n);
}
double Sum_Int32_1(const std::int32_t* v, std::int32_t n) {
  return SumIntegers(v, n);
}

// The largest of f(v(i)) for n above 0.
template <typename F>
inline float LargestOf(const float* v, std::int32_t n, F f) {
  if (n <= 0) return 0.0F;
  float largest = f(v[0]);
  std::int32_t i = 0;
  if (n >= kWide) {
    Wide best = f(LoadWide(v));
    for (i = kWide; i + kWide <= n; i += kWide) {
      const Wide next = f(LoadWide(v + i));
      best = next > best ? next : best;
    }
    for (int lane = 0; lane < kWide; ++lane) largest = best[lane] > largest ? best[lane] : largest;
  }
  for (; i < n; ++i) largest = f(v[i]) > largest ? f(v[i]) : largest;
  return largest;
}
float MaxValue_S(const float* v, std::int32_t n) {
  return LargestOf(v, n, [](auto x) { return x; });
}
float MaxValueAbs_S(const float* v, std::int32_t n) {
  return LargestOf(v, n, [](auto x) { return x < 0.0F ? -x : x; });
}
std::int16_t MaxValue_16(const std::int16_t* v, std::int32_t n) {
  if (n <= 0) return 0;
  std::int16_t largest = v[0];
  for (std::int32_t i = 1; i < n; ++i) largest = v[i] > largest ? v[i] : largest;
  return largest;
}
std::int32_t MaxIndex_S(const float* v, std::int32_t n) {
  if (n <= 0) return 0;
  std::int32_t index = 0, i = 0;
  if (n >= kWide) {
    WideInts at, where;
    for (int lane = 0; lane < kWide; ++lane) at[lane] = lane;
    where = at;
    Wide best = LoadWide(v);
    for (i = kWide; i + kWide <= n; i += kWide) {
      at += kWide;
      const Wide next = LoadWide(v + i);
      where = next > best ? at : where;
      best = next > best ? next : best;
    }
    index = where[0];
    for (int lane = 1; lane < kWide; ++lane) {
      const bool larger = best[lane] > v[index] || (best[lane] == v[index] && where[lane] < index);
      index = larger ? where[lane] : index;
    }
  }
  for (; i < n; ++i) index = v[i] > v[index] ? i : index;
  return index;
}

void ShiftVectorRight_S_1(float* v, std::int32_t n) {
  if (n > 0) std::memmove(v + 1, v, static_cast<std::size_t>(n) * sizeof(float));
}
void SetMemory_S(float* v, std::int32_t n, float value) {
  QUORL_EACH v[i] = value;
}
void VectorRamp_S_1(float start, float end, float* v, std::int32_t n) {
  if (n == 1) v[0] = start;
  if (n <= 1) return;
  const float step = (end - start) / static_cast<float>(n - 1);
  QUORL_EACH v[i] = start + step * static_cast<float>(i);
  v[n - 1] = end;
}

void LowThresh_S_1(float* v, std::int32_t, float t, std::int32_t n) {
  QUORL_EACH v[i] = v[i] < t ? t : v[i];
}
void HiThresh_S_1(float* v, std::int32_t, float t, std::int32_t n) {
  QUORL_EACH v[i] = v[i] > t ? t : v[i];
}
void LowThreshFract_S_1(float* v, float t, float f, std::int32_t n) {
  QUORL_EACH v[i] = v[i] < t ? v[i] * f : v[i];
}

void PowerSpectrum_S_2(const float* re, const float* im, float* out, std::int32_t n) {
  QUORL_EACH out[i] = __builtin_sqrtf(re[i] * re[i] + im[i] * im[i]);
}

// 16 logarithms at once: the exponent, and the series of artanh for what is left between root 1/2 and root 2.
inline Wide Log10Wide(Wide x) {
  constexpr float kSmallest = 1.17549435e-38F;
  constexpr std::int32_t kRootHalf = 0x3F3504F3;  // the bits of the square root of a half
  constexpr float kLog10Of2 = 0.301029995663981F, kTwoLog10OfE = 0.868588963806504F;
  x = x < 0.0F ? -x : x;
  x = x >= kSmallest ? x : Wide{} + kSmallest;
  const WideInts bits = (WideInts)x;  // NOLINT: the same bits
  const WideInts exponent = (bits - kRootHalf) >> 23;
  const Wide m = (Wide)(bits - (exponent << 23));  // NOLINT: the same bits
  const Wide s = (m - 1.0F) / (m + 1.0F), u = s * s;
  Wide p = u * (1.0F / 9.0F) + 1.0F / 7.0F;
  p = p * u + 0.2F;
  p = p * u + 1.0F / 3.0F;
  p = p * u + 1.0F;
  return __builtin_convertvector(exponent, Wide) * kLog10Of2 + p * s * kTwoLog10OfE;
}
void Log10_S_2(const float* in, float* out, std::int32_t n) {
  std::int32_t i = 0;
  for (; i + kWide <= n; i += kWide) *reinterpret_cast<WideAt*>(out + i) = Log10Wide(LoadWide(in + i));
  if (i >= n) return;
  float rest[kWide] = {};
  const auto bytes = static_cast<std::size_t>(n - i) * sizeof(float);
  std::memcpy(rest, in + i, bytes);
  *reinterpret_cast<WideAt*>(rest) = Log10Wide(LoadWide(rest));
  std::memcpy(out + i, rest, bytes);
}

void MovingRoot_S_2(const float* in, float* __restrict out, std::int32_t width, float scale, std::int32_t n) {
  QUORL_EACH out[i] = in[i];
  for (std::int32_t k = 1; k < width; ++k) QUORL_EACH out[i] += in[i + k];
  QUORL_EACH out[i] = scale * __builtin_sqrtf(out[i]);
}

// atan2 by a polynomial on the smaller over the larger of the two magnitudes (error 1e-8), then unfolded.
inline float Atan2(float y, float x) {
  constexpr float kPi = 3.14159265358979F, kHalfPi = 1.57079632679490F;
  const float absX = __builtin_fabsf(x), absY = __builtin_fabsf(y);
  const float larger = absX > absY ? absX : absY, smaller = absX > absY ? absY : absX;
  const float ratio = smaller / (larger > 0.0F ? larger : 1.0F);
  const float u = ratio * ratio;
  float p = 0.0027662835F;
  p = p * u - 0.0157312491F;
  p = p * u + 0.0421376236F;
  p = p * u - 0.0745685483F;
  p = p * u + 0.1061837064F;
  p = p * u - 0.1419779779F;
  p = p * u + 0.1999187203F;
  p = p * u - 0.3333303671F;
  p = p * u + 0.9999999818F;
  float angle = p * ratio;
  angle = absY > absX ? kHalfPi - angle : angle;
  angle = x < 0.0F ? kPi - angle : angle;
  return y < 0.0F ? -angle : angle;
}

void CartToPolar_S_2(const float* re, const float* im, float* mag, float* phase, std::int32_t n) {
  QUORL_EACH {
    const float x = re[i], y = im[i];
    mag[i] = __builtin_sqrtf(x * x + y * y);
    phase[i] = Atan2(y, x);
  }
}

void PolarToCart_S_2(const float* mag, const float* phase, float* re, float* im, std::int32_t n) {
  // Quarter turns are taken away in three steps of falling size, so that the rest stays exact.
  constexpr float kTurn1 = 1.5703125F, kTurn2 = 4.837512969970703125e-4F, kTurn3 = 7.549789948768648e-8F;
  constexpr float kRoundToInteger = 12582912.0F;
  QUORL_EACH {
    const float m = mag[i], angle = phase[i];
    const float turns = (angle * 0.636619772367581F + kRoundToInteger) - kRoundToInteger;
    const float x = ((angle - turns * kTurn1) - turns * kTurn2) - turns * kTurn3;
    const float u = x * x;
    const float sine = ((-1.9515295891e-4F * u + 8.3321608736e-3F) * u - 1.6666654611e-1F) * u * x + x;
    const float cosine =
        ((2.443315711809948e-5F * u - 1.388731625493765e-3F) * u + 4.166664568298827e-2F) * u * u - 0.5F * u +
        1.0F;
    const auto quarter = static_cast<std::int32_t>(turns);
    const float a = (quarter & 1) != 0 ? sine : cosine;
    const float b = (quarter & 1) != 0 ? cosine : sine;
    re[i] = m * (((quarter + 1) & 2) != 0 ? -a : a);
    im[i] = m * ((quarter & 2) != 0 ? -b : b);
  }
}

void Int16ToFloat_S_2(const std::int16_t* in, float* out, std::int32_t n) {
  QUORL_EACH out[i] = static_cast<float>(in[i]);
}
void FloatToInt16_S_2(const float* in, std::int16_t* out, std::int32_t n) {
  constexpr float kRoundToInteger = 12582912.0F;  // adding it leaves no bits for a fraction
  QUORL_EACH {
    float x = in[i];
    x = x == x ? x : 0.0F;
    x = x > 32767.0F ? 32767.0F : x;
    x = x < -32768.0F ? -32768.0F : x;
    out[i] = static_cast<std::int16_t>(static_cast<std::int32_t>((x + kRoundToInteger) - kRoundToInteger));
  }
}
void DoubleToSingle_D_2(const double* in, float* out, std::int32_t n) {
  QUORL_EACH out[i] = static_cast<float>(in[i]);
}

template <typename T>
inline void Split2(const T* __restrict in, T* __restrict a, T* __restrict b, std::int32_t pairs) {
  for (std::int32_t i = 0; i < pairs; ++i) {
    a[i] = in[2 * i];
    b[i] = in[2 * i + 1];
  }
}
void DeInterlace_16_2(const std::int16_t* in, std::int16_t* a, std::int16_t* b, std::int32_t n) {
  Split2(in, a, b, n / 2);
}
void DeInterlace_S_2(const float* in, float* a, float* b, std::int32_t n) {
  Split2(in, a, b, n / 2);
}
void Interlace_16_2(const std::int16_t* a, const std::int16_t* b, std::int16_t* __restrict out,
                    std::int32_t n) {
  for (std::int32_t i = 0; i < n / 2; ++i) {
    out[2 * i] = a[i];
    out[2 * i + 1] = b[i];
  }
}
void InterlaceScaled_S_2(float c, const float* a, const float* b, float* __restrict out, std::int32_t n) {
  for (std::int32_t i = 0; i < n / 2; ++i) {
    out[2 * i] = c * a[i];
    out[2 * i + 1] = c * b[i];
  }
}

void MixerIQ_S_S_1(const float* in, float* i, float* q, std::int32_t n) {
  // cos(pi k/2) is 1 0 -1 0, sin(pi k/2) is 0 1 0 -1.
  QUORL_INDEPENDENT
  for (std::int32_t k = 0; k < n / 4; ++k) {
    const float a = in[4 * k], b = in[4 * k + 1], c = in[4 * k + 2], d = in[4 * k + 3];
    i[4 * k] = a;
    i[4 * k + 1] = 0.0F;
    i[4 * k + 2] = -c;
    i[4 * k + 3] = 0.0F;
    q[4 * k] = 0.0F;
    q[4 * k + 1] = b;
    q[4 * k + 2] = 0.0F;
    q[4 * k + 3] = -d;
  }
}

std::uint32_t MakeFreq(std::uint32_t accumulator, std::uint32_t step, const float* sineTable,
                       const float* cosineTable, float* sine, float* cosine, std::int32_t n) {
  constexpr std::uint32_t kPhaseMask = 0x3FFFFFFF;
  QUORL_EACH {
    const std::uint32_t phase = (accumulator + step * (static_cast<std::uint32_t>(i) + 1U)) & kPhaseMask;
    sine[i] = sineTable[phase >> 14];
    cosine[i] = cosineTable[phase >> 14];
  }
  return n > 0 ? (accumulator + step * static_cast<std::uint32_t>(n)) & kPhaseMask : accumulator;
}

#include "dsp/kernel/FftRoutines.h"

void Convolve_Cart_S_2(const float* filterRe, const float* filterIm, float* re, float* im, std::int32_t n) {
  QUORL_EACH {
    const float a = re[i], b = im[i];
    re[i] = a * filterRe[i] - b * filterIm[i];
    im[i] = a * filterIm[i] + b * filterRe[i];
  }
}
void Filter_S_Cart_2(const float* inRe, const float* inIm, const float* filterRe, const float* filterIm,
                     float* outRe, float* outIm, std::int32_t n) {
  QUORL_EACH {
    const float a = inRe[i], b = inIm[i];
    outRe[i] = a * filterRe[i] - b * filterIm[i];
    outIm[i] = a * filterIm[i] + b * filterRe[i];
  }
}

void sHilbert(const float* history, const float* coefs, float* out, std::int32_t taps, std::int32_t count) {
  constexpr std::int32_t kRows = 4;  // independent sums, to hide the latency of the additions
  std::int32_t m = 0;
  for (; m + kRows * kLanes <= count; m += kRows * kLanes) {
    Floats sum[kRows]{};
    for (std::int32_t k = 1; k < taps; k += 2) {
      for (int row = 0; row < kRows; ++row)
        sum[row] += coefs[k] * Load(history + taps + m + row * kLanes - k);
    }
    for (int row = 0; row < kRows; ++row) Store(out + m + row * kLanes, sum[row]);
  }
  for (; m < count; ++m) {
    float sum = 0.0F;
    for (std::int32_t k = 1; k < taps; k += 2) sum += coefs[k] * history[taps + m - k];
    out[m] = sum;
  }
}

}  // namespace

const KernelTable QUORL_KERNEL_NAME{
    QUORL_KERNEL_SET,
#define KERNEL_ROUTINE(result, name, parameters, arguments) name,
#include "dsp/kernel/KernelTable.def"
#undef KERNEL_ROUTINE
};

}  // namespace quorl
