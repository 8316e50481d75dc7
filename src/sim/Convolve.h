// Convolution of a run of samples with a short filter.
#pragma once

namespace quorl {

// output[n] = sum over k of taps[k] * newest[n - k], n from 0 to frames - 1: `newest` reaches back to
// newest[1 - count].
void Convolve(const float* taps, int count, const float* newest, int frames, float* output);

}  // namespace quorl
