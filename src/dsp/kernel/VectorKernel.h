// Flat vector routines: all heavy arithmetic of the receiver goes through these.
//
// A name is <Op>_<type>_<n>: S is 32-bit float, D 64-bit float, 16 and Int16 16-bit integers; _1 works in
// place, _2 has a source and a destination (or an operand and an in-place one), _3 two sources and a
// destination. Lengths are counts of elements; a count of 0 or less does nothing. A destination may be one of
// the sources, but must not overlap one otherwise. Nothing allocates, nothing fails.
//
// The instruction set (baseline, AVX2+FMA, AVX-512) is chosen once, when the program starts.
#pragma once

#include <cstdint>

#include "dsp/kernel/FftPlan.h"

namespace quorl {

// Elementwise arithmetic. v(i) := c x v(i), a(i) x v(i); out(i) := a(i) x b(i); and so on.
void Mpy_S_1(float c, float* v, std::int32_t n);
void Mpy_S_2(const float* a, float* v, std::int32_t n);
void Mpy_S_3(const float* a, const float* b, float* out, std::int32_t n);
void Mpy_D_1(double c, double* v, std::int32_t n);
void Mpy_D_2(const double* a, double* v, std::int32_t n);
void Add_S_1(float c, float* v, std::int32_t n);
void Add_S_2(const float* a, float* v, std::int32_t n);
void Add_S_3(const float* a, const float* b, float* out, std::int32_t n);
void Add_D_2(const double* a, double* v, std::int32_t n);
void Sub_S_1(float c, float* v, std::int32_t n);                           // v(i) := c - v(i)
void Sub_S_3(const float* a, const float* b, float* out, std::int32_t n);  // out(i) := a(i) - b(i)
void Negate_S(float* v, std::int32_t n);
void NegateAndDiv_S_1(float divisor, float* v, std::int32_t n);  // v(i) := -v(i) / divisor
void Abs_S_1(float* v, std::int32_t n);
void Sqr_S_1(float* v, std::int32_t n);
void Sqr_S_2(const float* in, float* out, std::int32_t n);

// Reductions. Sums run in partial sums of sixteen, so that the result does not depend on the processor.
float Sum_S_1(const float* v, std::int32_t n);
double Sum_D_1(const double* v, std::int32_t n);
double Sum_Int16_1(const std::int16_t* v, std::int32_t n);
double Sum_Int32_1(const std::int32_t* v, std::int32_t n);
float MaxValue_S(const float* v, std::int32_t n);     // 0 where n is 0
float MaxValueAbs_S(const float* v, std::int32_t n);  // 0 where n is 0
std::int16_t MaxValue_16(const std::int16_t* v, std::int32_t n);
std::int32_t MaxIndex_S(const float* v, std::int32_t n);  // first of the largest, from v; 0 where n is 0

// Moves and fills.
void ShiftVectorRight_S_1(float* v, std::int32_t n);  // v(1..n) := v(0..n-1); v holds n + 1 elements
void SetMemory_S(float* v, std::int32_t n, float value);
void VectorRamp_S_1(float start, float end, float* v, std::int32_t n);  // first is start, last is end
void CopyVector_S(const float* in, float* out, std::int32_t n);
void CopyVector_16(const std::int16_t* in, std::int16_t* out, std::int32_t n);
void ZeroVector_S(float* v, std::int32_t n);
void ZeroVector_16(std::int16_t* v, std::int32_t n);

// Thresholds. `option` is 0.
void LowThresh_S_1(float* v, std::int32_t option, float t, std::int32_t n);  // what is under t becomes t
void HiThresh_S_1(float* v, std::int32_t option, float t, std::int32_t n);   // what is over t becomes t
void LowThreshFract_S_1(float* v, float t, float f, std::int32_t n);         // what is under t times f

// Complex pairs. Phases in radians, -pi to pi; the magnitude and the phase are good to 1e-6 (relative and
// radians) for magnitudes from 1e-18 to 1e18; the phase of (0, 0) is 0. PolarToCart_S_2 takes |phase| < 1e4.
void PowerSpectrum_S_2(const float* re, const float* im, float* out, std::int32_t n);
void CartToPolar_S_2(const float* re, const float* im, float* mag, float* phase, std::int32_t n);
void PolarToCart_S_2(const float* mag, const float* phase, float* re, float* im, std::int32_t n);
// out(i) := scale x square root of (in(i) + ... + in(i + width - 1)); in holds n + width - 1 elements.
void MovingRoot_S_2(const float* in, float* out, std::int32_t width, float scale, std::int32_t n);

// out(i) := log10 of |in(i)|, good to 1e-6 for results around 1; what is smaller than 1.2e-38 counts as that.
void Log10_S_2(const float* in, float* out, std::int32_t n);

// Sample formats. FloatToInt16_S_2 rounds half to even, saturates and makes NaN 0.
void Int16ToFloat_S_2(const std::int16_t* in, float* out, std::int32_t n);
void FloatToInt16_S_2(const float* in, std::int16_t* out, std::int32_t n);
void DoubleToSingle_D_2(const double* in, float* out, std::int32_t n);

// Pairs. n counts the elements of the interlaced vector, 2 x those of a and b.
void DeInterlace_16_2(const std::int16_t* in, std::int16_t* a, std::int16_t* b, std::int32_t n);
void DeInterlace_S_2(const float* in, float* a, float* b, std::int32_t n);
void Interlace_16_2(const std::int16_t* a, const std::int16_t* b, std::int16_t* out, std::int32_t n);
void InterlaceScaled_S_2(float c, const float* a, const float* b, float* out, std::int32_t n);

// Mixers. MixerIQ_S_S_1: i(k) := in(k) cos(pi k / 2), q(k) := in(k) sin(pi k / 2), n a multiple of 4.
void MixerIQ_S_S_1(const float* in, float* i, float* q, std::int32_t n);
// n samples of a table oscillator: the 30-bit accumulator advances by step before each look-up at its upper
// 16 bits; returns the accumulator to go on from. Tables of 65536 entries.
std::uint32_t MakeFreq(std::uint32_t accumulator, std::uint32_t step, const float* sineTable,
                       const float* cosineTable, float* sine, float* cosine, std::int32_t n);

// Transforms; clsFFT and clsFFTReal hold the plans and tables.
// Complex forward transform of plan.Points, no scaling. Outputs and work arrays differ from the inputs.
void FFT_S_2(const FftPlan& plan, const float* realIn, const float* imagIn, float* realOut, float* imagOut,
             float* workReal, float* workImag);
// From the n/2-point transform of even + i odd samples, in place, the n-point spectrum of the real signal.
// cosines and sines: cos(2 pi k / n), -sin(2 pi k / n), k = 0 .. n/4.
void FFT_Real_S_1(float* re, float* im, std::int32_t n, const float* cosines, const float* sines);
// The way back: from bins 0 .. n/2 of the n-point spectrum, in place, the n/2-point transform (times 2).
void IFFT_Real_S_1(float* re, float* im, std::int32_t n, const float* cosines, const float* sines);
// Upper half from the lower one: re(n-k) := re(k), im(n-k) := -im(k), k = 1 .. n/2-1, n = 2^order.
void MakeNegFreq_S_1_P(float* re, float* im, std::int32_t order);
// (re, im) := (re, im) x (filterRe, filterIm), complex, in place; and with separate output.
void Convolve_Cart_S_2(const float* filterRe, const float* filterIm, float* re, float* im, std::int32_t n);
void Filter_S_Cart_2(const float* inRe, const float* inIm, const float* filterRe, const float* filterIm,
                     float* outRe, float* outIm, std::int32_t n);

// out(m) := sum over odd k < taps of coefs(k) x history(taps + m - k), m < count: the even taps of a Hilbert
// transformer with an even centre are zero.
void sHilbert(const float* history, const float* coefs, float* out, std::int32_t taps, std::int32_t count);

// The instruction set in use, "baseline", "AVX2" or "AVX-512": the best that the processor has, or the one
// that the environment variable names, so that they can be measured against each other.
const char* KernelInstructionSet();
inline constexpr char kKernelVariable[] = "QUORL_KERNEL";

}  // namespace quorl
