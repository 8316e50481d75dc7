// The spectrum of a stretch of a recording: mean, peaks and how it went, on one scale of frequencies.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "LineCollector.h"
#include "display/analyser/clsSpectrumAnalyser.h"
#include "receiver/Receiver.h"

namespace quorl::cli {

struct SpectrumSettings {
  std::int32_t Source = SpectrumSource::IFIn;
  SpectrumWindow Window = SpectrumWindow::BlackmanHarris;
  // Hz on the air of the middle of the recorded band; without it the scale is that of the recording itself.
  std::optional<std::int32_t> Centre;
};

class SpectrumMeter {
 public:
  // Stands at the receiver's tap as long as it lives. The receiver is set up already.
  SpectrumMeter(Receiver& receiver, const SpectrumSettings& settings);
  ~SpectrumMeter();
  SpectrumMeter(const SpectrumMeter&) = delete;
  SpectrumMeter& operator=(const SpectrumMeter&) = delete;

  // The block that the receiver has just processed.
  void Take() { analyser_.Display(); }

  std::int64_t Blocks() const { return blocks_; }
  // The whole band; bins from the left upwards in frequency.
  const FrequencyScale& Frequencies() const { return frequencies_; }
  struct Point {
    double Hertz;
    float Decibels;  // below a full-scale sine, not under kSilence
  };
  static constexpr float kSilence = -200.0F;
  // Of each bin, upwards in frequency: the power's mean over all blocks, and its highest.
  std::vector<Point> Mean() const { return Points(sums_, static_cast<double>(blocks_)); }
  std::vector<Point> Peaks() const { return Points(peaks_, 1.0); }
  // In the order of time, bins in that of the transform.
  const LineCollector& Lines() const { return lines_; }
  bool Ascending() const { return ascending_; }  // the transform runs upwards in frequency

 private:
  void TakeLine(const SpectrumLine& line);
  void PlaceBand(std::size_t bins);
  std::vector<Point> Points(const std::vector<double>& powers, double blocks) const;

  Receiver& receiver_;
  SpectrumSettings settings_;
  clsSpectrumAnalyser analyser_;
  FrequencyScale frequencies_;
  bool ascending_ = true;
  std::vector<double> sums_, peaks_;  // of powers, in the order of the transform
  std::int64_t blocks_ = 0;
  LineCollector lines_;
};

}  // namespace quorl::cli
