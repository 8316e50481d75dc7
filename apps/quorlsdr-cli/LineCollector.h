// Spectrum lines of a recording of any length, as many as a picture has rows.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace quorl::cli {

// When twice as many lines as kRows have come, each two of them become one, whose bins are the higher ones,
// and from then on as many more blocks make a line.
class LineCollector {
 public:
  static constexpr std::size_t kRows = 400;

  // One block; all of the same length.
  void Add(std::span<const float> bins);

  // From kRows to 2 x kRows, or as many as blocks came where those are fewer. The last may be short of
  // blocks.
  std::size_t Count() const { return bins_ == 0 ? 0 : levels_.size() / bins_; }
  int BlocksPerLine() const { return blocksPerLine_; }
  std::span<const float> Line(std::size_t line) const { return {levels_.data() + line * bins_, bins_}; }

 private:
  void Halve();
  float* LineAt(std::size_t line) { return levels_.data() + line * bins_; }

  std::vector<float> levels_;
  std::size_t bins_ = 0;
  int blocksPerLine_ = 1, blocks_ = 0;  // of the last line
};

}  // namespace quorl::cli
