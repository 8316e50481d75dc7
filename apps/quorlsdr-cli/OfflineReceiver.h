// The receiver set up for one recording, fed block by block.
#pragma once

#include <cstdint>
#include <memory>

#include "ReceiveOptions.h"

namespace quorl {
class Receiver;
}

namespace quorl::cli {

// What a reception was like.
struct ReceptionReport {
  std::int64_t Blocks = 0;
  double SignalLevel = 0.0;  // mean of the last blocks' levels before demodulation
  double AGCGain = 1.0;      // gain of the last block
  int PeakIn = 0;            // largest magnitudes before and after the chain
  int PeakOut = 0;
  double BlockMeanMicroseconds = 0.0;
  double BlockMaxMicroseconds = 0.0;
};

class OfflineReceiver {
 public:
  explicit OfflineReceiver(const ReceiveOptions& options);
  ~OfflineReceiver();

  // One block of SamplesPerEvent samples a channel through pump and chain, then one pass of housekeeping.
  // The audio comes back in `left`.
  void Process(std::int16_t* left, const std::int16_t* right);

  ReceptionReport Report() const;
  Receiver& Radio();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

// One line of JSON: the report, with the `frames` that went through and how long that took.
void PrintReport(const ReceptionReport& report, std::int64_t frames, double elapsedSeconds);

}  // namespace quorl::cli
