// Windowed-sinc designs and windows, in double precision.
#pragma once

#include <cstdint>

namespace quorl {

enum WindowKind : std::int32_t { kRectangularWindow = 0, kHammingWindow = 1, kBlackmanWindow = 2 };

// window(i), i = 0 .. points-1: ones, Hamming or Blackman; any other kind leaves it as it is.
void CalcWindowCoeffs_D(std::int32_t points, double* window, std::int32_t kind);

// Band pass between two edges (radians per sample) as the difference of two sincs: points - 1 taps around the
// centre tap (points-1)/2, entry points-1 is 0. `quadrature` gives its Hilbert transform: the same band 90
// degrees apart. Not windowed.
void CalcBPFilterCoeffs(std::int32_t points, double* coeffs, double highEdge, double lowEdge,
                        bool quadrature);

// Band stop between two edges (radians per sample): a low pass at the low edge plus a high pass at the high
// edge by spectral inversion, around tap points/2, windowed, each of gain one in its pass band, also as
// floats.
void CalcBSFilterCoeffs(std::int32_t points, double* coeffs, float* coeffsS, const double* window,
                        double highEdge, double lowEdge);

}  // namespace quorl
