#include "dsp/filters/FilterDesign.h"

#include <algorithm>
#include <cmath>

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

void CalcWindowCoeffs_D(std::int32_t points, double* window, std::int32_t kind) {
  const double turn = 2.0 * M_PI / (points - 1);
  for (std::int32_t i = 0; i < points; ++i) {
    if (kind == kRectangularWindow) window[i] = 1.0;
    if (kind == kHammingWindow) window[i] = 0.54 - 0.46 * std::cos(i * turn);
    if (kind == kBlackmanWindow) window[i] = 0.42 - 0.5 * std::cos(i * turn) + 0.08 * std::cos(2 * i * turn);
  }
}

void CalcBPFilterCoeffs(std::int32_t points, double* coeffs, double highEdge, double lowEdge,
                        bool quadrature) {
  const std::int32_t reach = (points - 1) / 2;
  coeffs[points - 1] = 0.0;
  for (std::int32_t i = -reach; i <= reach; ++i) {
    double tap = quadrature ? 0.0 : (highEdge - lowEdge) / M_PI;
    if (i != 0) {
      tap = quadrature ? std::cos(i * highEdge) - std::cos(i * lowEdge)
                       : std::sin(i * highEdge) - std::sin(i * lowEdge);
      tap /= i * M_PI;
    }
    coeffs[i + reach] = tap;
  }
}

namespace {

// A low pass of gain one at `edge` around tap points/2, times the window. Adds to `coeffs`, scaled by `sign`.
void AddLowPass(std::int32_t points, double* coeffs, const double* window, double edge, double sign) {
  const std::int32_t centre = points / 2;
  const auto tap = [&](std::int32_t k) {
    const std::int32_t i = k - centre;
    return (i == 0 ? edge : std::sin(i * edge) / i) * window[k];
  };
  double sum = 0.0;
  for (std::int32_t k = 0; k < points; ++k) sum += tap(k);
  if (sum == 0.0) return;
  for (std::int32_t k = 0; k < points; ++k) coeffs[k] += sign / sum * tap(k);
}

}  // namespace

void CalcBSFilterCoeffs(std::int32_t points, double* coeffs, float* coeffsS, const double* window,
                        double highEdge, double lowEdge) {
  std::fill_n(coeffs, points, 0.0);
  AddLowPass(points, coeffs, window, highEdge, -1.0);
  coeffs[points / 2] += 1.0;
  AddLowPass(points, coeffs, window, lowEdge, 1.0);
  DoubleToSingle_D_2(coeffs, coeffsS, points);
}

}  // namespace quorl
