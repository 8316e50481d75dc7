// What the waterfall remembers: ten minutes of spectrum lines at one for every block, each with its time and
// frequencies.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "display/analyser/SpectrumLine.h"

namespace quorl {

// Lines are numbered from 0 as they come; the oldest make room for the newest.
class WaterfallHistory {
 public:
  // Lines of 1024 bins; of 2048 bins there is room for half as many.
  static constexpr std::int64_t kLines = 14063;
  static constexpr std::size_t kBins = 1024, kMostBins = 2048;
  static constexpr std::size_t kBytes = static_cast<std::size_t>(kLines) * kBins;
  // A pause of the lines is shown by as many empty ones as are missing, at most by these.
  static constexpr std::int64_t kMostGapLines = 12;

  struct Line {
    std::int64_t Time = 0;  // microseconds since 1970 UTC, of its last block
    // Half decibels below a full-scale sine, upwards in frequency. Empty for a line of a gap.
    std::span<const std::uint8_t> Levels;
    double HertzPerBin = 0;
    double Lowest = 0;  // Hz, of the first level
  };

  // Takes the memory, once. Until then nothing is remembered.
  void Start();
  bool IsStarted() const { return !levels_.empty(); }
  void Clear();
  std::int64_t Cleared() const { return cleared_; }  // number of the first line since the last Clear

  // Blocks for each line, 1 or more: each bin is the highest of them.
  void SetBlocksPerLine(int blocks);
  int BlocksPerLine() const { return blocksPerLine_; }
  std::int64_t LineMicroseconds() const;

  // One block at `time`, microseconds since 1970 UTC. Up to kMostBins bins.
  void Add(const SpectrumLine& line, std::int64_t time);

  std::int64_t Oldest() const { return oldest_; }
  std::int64_t End() const { return end_; }  // number of the next line
  std::int64_t Count() const { return end_ - oldest_; }
  // `number` from Oldest() to End() - 1. Its levels stay until the next Add.
  Line At(std::int64_t number) const;

  static float Decibels(std::uint8_t level) { return -0.5F * static_cast<float>(level); }

 private:
  struct Entry {
    std::int64_t Time = 0;
    std::size_t Place = 0, Bins = 0;
    double HertzPerBin = 0, Lowest = 0;
  };

  void Gather(const SpectrumLine& line);
  bool Fits(const SpectrumLine& line) const;
  void MovePending(std::int64_t bins);
  void Store();
  void StoreGap(std::int64_t until);
  Entry& Next(std::size_t bins);
  void DropOldest(std::size_t from, std::size_t bins);
  Entry& EntryAt(std::int64_t number) { return entries_[static_cast<std::size_t>(number % kLines)]; }
  const Entry& EntryAt(std::int64_t number) const {
    return entries_[static_cast<std::size_t>(number % kLines)];
  }

  std::vector<std::uint8_t> levels_;
  std::vector<Entry> entries_;
  std::int64_t oldest_ = 0, end_ = 0, cleared_ = 0;
  std::size_t place_ = 0;  // where the next line's levels go
  int blocksPerLine_ = 1;

  // The line that is being gathered: the highest magnitude of each bin, upwards in frequency.
  std::vector<float> pending_;
  std::size_t pendingBins_ = 0;
  int pendingBlocks_ = 0;
  double pendingHertzPerBin_ = 0, pendingLowest_ = 0;
  std::int64_t lastTime_ = 0;
  bool anyBlock_ = false;
};

}  // namespace quorl
