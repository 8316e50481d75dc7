// Vectors of the compiler, as wide as the instruction set that this file is compiled for.
//
// Included once by each kernel variant, inside its anonymous namespace: nothing here may have external
// linkage, or the linker could hand a routine with wide instructions to a processor that lacks them.

#if defined(__AVX512F__)
constexpr std::int32_t kLanes = 16;
#elif defined(__AVX2__)
constexpr std::int32_t kLanes = 8;
#else
constexpr std::int32_t kLanes = 4;
#endif

using Floats = float __attribute__((vector_size(kLanes * 4)));
using FloatsAt = float __attribute__((vector_size(kLanes * 4), aligned(4), may_alias));
using Quad = float __attribute__((vector_size(16)));
using QuadAt = float __attribute__((vector_size(16), aligned(4), may_alias));
// Sixteen at a time whatever the processor: partial sums then add up in the same order everywhere.
using Wide = float __attribute__((vector_size(64)));
using WideAt = float __attribute__((vector_size(64), aligned(4), may_alias));
using WideInts = std::int32_t __attribute__((vector_size(64)));
constexpr std::int32_t kWide = 16;

inline Floats Load(const float* p) {
  return *reinterpret_cast<const FloatsAt*>(p);
}
inline void Store(float* p, Floats v) {
  *reinterpret_cast<FloatsAt*>(p) = v;
}
inline Quad LoadQuad(const float* p) {
  return *reinterpret_cast<const QuadAt*>(p);
}
inline void StoreQuad(float* p, Quad v) {
  *reinterpret_cast<QuadAt*>(p) = v;
}
inline Wide LoadWide(const float* p) {
  return *reinterpret_cast<const WideAt*>(p);
}

// Zips groups of `Group` lanes: the low (high) halves of a and b in turn, a's group first.
template <int Group>
inline Floats ZipLow(Floats a, Floats b) {
#if defined(__AVX512F__)
  if constexpr (Group == 1) {
    return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
  } else {
    return __builtin_shufflevector(a, b, 0, 1, 2, 3, 16, 17, 18, 19, 4, 5, 6, 7, 20, 21, 22, 23);
  }
#elif defined(__AVX2__)
  if constexpr (Group == 1) {
    return __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
  } else {
    return __builtin_shufflevector(a, b, 0, 1, 2, 3, 8, 9, 10, 11);
  }
#else
  return __builtin_shufflevector(a, b, 0, 4, 1, 5);
#endif
}
template <int Group>
inline Floats ZipHigh(Floats a, Floats b) {
#if defined(__AVX512F__)
  if constexpr (Group == 1) {
    return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
  } else {
    return __builtin_shufflevector(a, b, 8, 9, 10, 11, 24, 25, 26, 27, 12, 13, 14, 15, 28, 29, 30, 31);
  }
#elif defined(__AVX2__)
  if constexpr (Group == 1) {
    return __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
  } else {
    return __builtin_shufflevector(a, b, 4, 5, 6, 7, 12, 13, 14, 15);
  }
#else
  return __builtin_shufflevector(a, b, 2, 6, 3, 7);
#endif
}
