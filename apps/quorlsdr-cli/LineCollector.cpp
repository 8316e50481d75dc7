#include "LineCollector.h"

#include <algorithm>

namespace quorl::cli {

namespace {

void TakeHigher(const float* bins, std::size_t count, float* line) {
  for (std::size_t bin = 0; bin < count; ++bin) line[bin] = std::max(line[bin], bins[bin]);
}

}  // namespace

void LineCollector::Add(std::span<const float> bins) {
  bins_ = bins.size();
  if (blocks_ == 0 || blocks_ == blocksPerLine_) {
    if (Count() == 2 * kRows) Halve();
    levels_.insert(levels_.end(), bins.begin(), bins.end());
    blocks_ = 1;
  } else {
    TakeHigher(bins.data(), bins_, LineAt(Count() - 1));
    ++blocks_;
  }
}

void LineCollector::Halve() {
  for (std::size_t line = 0; line < kRows; ++line) {
    if (line > 0) std::copy_n(LineAt(2 * line), bins_, LineAt(line));
    TakeHigher(LineAt(2 * line + 1), bins_, LineAt(line));
  }
  levels_.resize(kRows * bins_);
  blocksPerLine_ *= 2;
}

}  // namespace quorl::cli
