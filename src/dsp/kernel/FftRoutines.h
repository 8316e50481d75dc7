// Self-sorting (Stockham) FFT passes over split real and imaginary arrays.
//
// A pass with stride s combines, for each p, inputs at q + s (p + k n/r), k = 0 .. r-1, into outputs at
// q + s (r p + k), q = 0 .. s-1: after the last pass the spectrum stands in order and no bit reversal is due.
// Included once by each kernel variant, inside its anonymous namespace.

template <typename V>
struct Complex {
  V re, im;
};

template <typename V>
inline Complex<V> operator+(Complex<V> a, Complex<V> b) {
  return {a.re + b.re, a.im + b.im};
}
template <typename V>
inline Complex<V> operator-(Complex<V> a, Complex<V> b) {
  return {a.re - b.re, a.im - b.im};
}
template <typename V>
inline Complex<V> TimesMinusI(Complex<V> a) {
  return {a.im, -a.re};
}
template <typename V, typename W>
inline Complex<V> Times(Complex<V> a, W cosine, W sine) {
  return {a.re * cosine - a.im * sine, a.re * sine + a.im * cosine};
}

template <typename V>
inline void Butterfly2(Complex<V>* x) {
  const Complex<V> a = x[0], b = x[1];
  x[0] = a + b;
  x[1] = a - b;
}

template <typename V>
inline void Butterfly4(Complex<V>* x) {
  const Complex<V> sumEven = x[0] + x[2], differenceEven = x[0] - x[2];
  const Complex<V> sumOdd = x[1] + x[3], differenceOdd = TimesMinusI(x[1] - x[3]);
  x[0] = sumEven + sumOdd;
  x[1] = differenceEven + differenceOdd;
  x[2] = sumEven - sumOdd;
  x[3] = differenceEven - differenceOdd;
}

template <typename V>
inline void Butterfly8(Complex<V>* x) {
  constexpr float kHalfRoot = 0.70710678118654752F;
  Complex<V> even[4] = {x[0], x[2], x[4], x[6]};
  Complex<V> odd[4] = {x[1], x[3], x[5], x[7]};
  Butterfly4(even);
  Butterfly4(odd);
  odd[1] = {(odd[1].re + odd[1].im) * kHalfRoot, (odd[1].im - odd[1].re) * kHalfRoot};
  odd[2] = TimesMinusI(odd[2]);
  odd[3] = {(odd[3].im - odd[3].re) * kHalfRoot, (-odd[3].im - odd[3].re) * kHalfRoot};
  for (int k = 0; k < 4; ++k) {
    x[k] = even[k] + odd[k];
    x[k + 4] = even[k] - odd[k];
  }
}

template <int Radix, typename V>
inline void Butterfly(Complex<V>* x) {
  if constexpr (Radix == 2) Butterfly2(x);
  if constexpr (Radix == 4) Butterfly4(x);
  if constexpr (Radix == 8) Butterfly8(x);
}

struct Split {
  const float* re;
  const float* im;
};
struct SplitOut {
  float* re;
  float* im;
};

// One column of sub-transforms: V is a vector type, or float where the stride is shorter than a vector.
template <int Radix, typename V, typename LoadV, typename StoreV>
inline void PassColumn(const FftPass& pass, Split in, SplitOut out, std::int32_t p, std::int32_t q,
                       LoadV load, StoreV store) {
  const std::int32_t count = pass.Length / Radix, s = pass.Stride;
  Complex<V> x[Radix];
  for (int k = 0; k < Radix; ++k) {
    const std::int32_t at = q + s * (p + k * count);
    x[k] = {load(in.re + at), load(in.im + at)};
  }
  Butterfly<Radix>(x);
  const float* w = pass.Twiddles + p;
  for (int k = 0; k < Radix; ++k) {
    if (k > 0 && count > 1) {
      x[k] = Times(x[k], w[0], w[count]);
      w += 2 * count;
    }
    const std::int32_t at = q + s * (Radix * p + k);
    store(out.re + at, x[k].re);
    store(out.im + at, x[k].im);
  }
}

inline float LoadOne(const float* p) {
  return *p;
}
inline void StoreOne(float* p, float v) {
  *p = v;
}

// Stores four vectors group by group: a's first group, b's, c's, d's, then their second groups, and so on.
template <int Group>
inline void StoreInTurn(float* p, Floats a, Floats b, Floats c, Floats d) {
  if constexpr (Group == kLanes) {
    Store(p, a);
    Store(p + kLanes, b);
    Store(p + 2 * kLanes, c);
    Store(p + 3 * kLanes, d);
  } else {
    const Floats lowAC = ZipLow<Group>(a, c), lowBD = ZipLow<Group>(b, d);
    const Floats highAC = ZipHigh<Group>(a, c), highBD = ZipHigh<Group>(b, d);
    Store(p, ZipLow<Group>(lowAC, lowBD));
    Store(p + kLanes, ZipHigh<Group>(lowAC, lowBD));
    Store(p + 2 * kLanes, ZipLow<Group>(highAC, highBD));
    Store(p + 3 * kLanes, ZipHigh<Group>(highAC, highBD));
  }
}

// Radix 4 with a stride (1 or 4) under the vector's length: vectors run over j = q + s p.
template <int Stride>
inline void InterleavedPass4(const FftPass& pass, Split in, SplitOut out) {
  const std::int32_t count = pass.Length / 4 * Stride;
  const float* w = pass.Twiddles;
  for (std::int32_t j = 0; j < count; j += kLanes) {
    Complex<Floats> x[4];
    for (int k = 0; k < 4; ++k) x[k] = {Load(in.re + j + k * count), Load(in.im + j + k * count)};
    Butterfly4(x);
    for (int k = 1; k < 4; ++k) {
      x[k] = Times(x[k], Load(w + (2 * k - 2) * count + j), Load(w + (2 * k - 1) * count + j));
    }
    StoreInTurn<Stride>(out.re + 4 * j, x[0].re, x[1].re, x[2].re, x[3].re);
    StoreInTurn<Stride>(out.im + 4 * j, x[0].im, x[1].im, x[2].im, x[3].im);
  }
}

template <int Radix>
inline void RunPass(const FftPass& pass, Split in, SplitOut out) {
  const std::int32_t count = pass.Length / Radix, s = pass.Stride;
  if (s % kLanes == 0) {
    for (std::int32_t p = 0; p < count; ++p) {
      for (std::int32_t q = 0; q < s; q += kLanes)
        PassColumn<Radix, Floats>(pass, in, out, p, q, Load, Store);
    }
  } else if (s % 4 == 0) {
    for (std::int32_t p = 0; p < count; ++p) {
      for (std::int32_t q = 0; q < s; q += 4)
        PassColumn<Radix, Quad>(pass, in, out, p, q, LoadQuad, StoreQuad);
    }
  } else {
    for (std::int32_t p = 0; p < count; ++p) {
      for (std::int32_t q = 0; q < s; ++q) PassColumn<Radix, float>(pass, in, out, p, q, LoadOne, StoreOne);
    }
  }
}

void FFT_S_2(const FftPlan& plan, const float* realIn, const float* imagIn, float* realOut, float* imagOut,
             float* workReal, float* workImag) {
  if (plan.Points == 1) {
    realOut[0] = realIn[0];
    imagOut[0] = imagIn[0];
  }
  Split in{realIn, imagIn};
  for (std::int32_t i = 0; i < plan.PassCount; ++i) {
    const FftPass& pass = plan.Passes[i];
    // The passes alternate between the two targets so that the last one ends in the output.
    const bool toOutput = (plan.PassCount - i) % 2 == 1;
    const SplitOut out{toOutput ? realOut : workReal, toOutput ? imagOut : workImag};
    if (pass.Interleaved) {
      pass.Stride == 1 ? InterleavedPass4<1>(pass, in, out) : InterleavedPass4<4>(pass, in, out);
    } else if (pass.Radix == 4) {
      RunPass<4>(pass, in, out);
    } else if (pass.Radix == 8) {
      RunPass<8>(pass, in, out);
    } else {
      RunPass<2>(pass, in, out);
    }
    in = {out.re, out.im};
  }
}

// With M = n/2 and Z the transform of even + i odd samples: even(k) = (Z(k) + conj Z(M-k)) / 2,
// odd(k) = -i (Z(k) - conj Z(M-k)) / 2, X(k) = even(k) + w^k odd(k), X(k+M) = even(k) - w^k odd(k).
void FFT_Real_S_1(float* re, float* im, std::int32_t n, const float* cosines, const float* sines) {
  const std::int32_t half = n / 2, quarter = n / 4;
  QUORL_INDEPENDENT
  for (std::int32_t k = 1; k < quarter; ++k) {
    const float evenRe = 0.5F * (re[k] + re[half - k]), evenIm = 0.5F * (im[k] - im[half - k]);
    const float oddRe = 0.5F * (im[k] + im[half - k]), oddIm = -0.5F * (re[k] - re[half - k]);
    const float turnedRe = oddRe * cosines[k] - oddIm * sines[k];
    const float turnedIm = oddRe * sines[k] + oddIm * cosines[k];
    const float lowRe = evenRe + turnedRe, lowIm = evenIm + turnedIm;
    const float highRe = evenRe - turnedRe, highIm = evenIm - turnedIm;
    re[k] = lowRe;
    im[k] = lowIm;
    re[half - k] = highRe;
    im[half - k] = -highIm;
    re[half + k] = highRe;
    im[half + k] = highIm;
    re[n - k] = lowRe;
    im[n - k] = -lowIm;
  }
  // Bins 0, M/2, M and 3M/2 are their own mirror images.
  const float sumRe = re[0] + im[0], differenceRe = re[0] - im[0];
  re[0] = sumRe;
  re[half] = differenceRe;
  im[0] = im[half] = 0.0F;
  if (quarter > 0) {
    re[half + quarter] = re[quarter];
    im[half + quarter] = im[quarter];
    im[quarter] = -im[quarter];
  }
}

void IFFT_Real_S_1(float* re, float* im, std::int32_t n, const float* cosines, const float* sines) {
  const std::int32_t half = n / 2, quarter = n / 4;
  QUORL_INDEPENDENT
  for (std::int32_t k = 1; k < quarter; ++k) {
    const float evenRe = re[k] + re[half - k], evenIm = im[k] - im[half - k];
    const float turnedRe = re[k] - re[half - k], turnedIm = im[k] + im[half - k];
    const float oddRe = turnedRe * cosines[k] + turnedIm * sines[k];
    const float oddIm = turnedIm * cosines[k] - turnedRe * sines[k];
    re[k] = evenRe - oddIm;
    im[k] = evenIm + oddRe;
    re[half - k] = evenRe + oddIm;
    im[half - k] = oddRe - evenIm;
  }
  const float sum = re[0] + re[half], difference = re[0] - re[half];
  re[0] = sum;
  im[0] = difference;
  if (quarter > 0) {
    re[quarter] = 2.0F * re[quarter];
    im[quarter] = -2.0F * im[quarter];
  }
}

void MakeNegFreq_S_1_P(float* re, float* im, std::int32_t order) {
  const std::int32_t n = 1 << order;
  QUORL_INDEPENDENT
  for (std::int32_t k = 1; k < n / 2; ++k) {
    re[n - k] = re[k];
    im[n - k] = -im[k];
  }
}
