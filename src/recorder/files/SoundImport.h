// Makes a recording out of a sound file of any other make: 48 kHz, one channel, 16 bits.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/SoundFiles.h"
#include "platform/files/FileJob.h"
#include "recorder/files/WavWriter.h"

namespace quorl {

// Channels become their mean, the rate is converted, and what goes beyond full scale is clipped. A file that
// has 48 kHz, one channel and 16 bits already keeps every sample as it is.
class SoundImport final : public FileJob {
 public:
  static constexpr int kRate = 48000;                              // Hz
  static constexpr int kLowestRate = 1000, kHighestRate = 768000;  // that are taken, Hz
  // What a recording may have at most; beyond it positions in the file end.
  static constexpr std::int64_t kMostBytes = 2147483647;

  // `from` becomes `to`, which is replaced whole. `files` and `media` outlive the job.
  SoundImport(Files& files, const SoundFiles& media, std::string from, std::string to);

  // Fails with one line for a file that is no sound file, damaged, or has a rate or length that isn't taken.
  Failure Step() override;
  bool IsDone() const override { return done_; }
  double Progress() const override;
  void Discard() override;

 private:
  Failure Begin();
  Failure Check() const;
  Failure Piece();
  Failure End();
  Failure Put(const std::vector<float>& samples);
  void Mix(int frames);
  Failure Fault(int code, const std::string& text) const { return Error{code, from_ + ": " + text}; }

  Files& files_;
  const SoundFiles& media_;
  std::string from_, to_;
  std::unique_ptr<SoundFileReader> reader_;
  std::unique_ptr<RateConverter> converter_;  // null where the rate is right
  std::unique_ptr<WavWriter> writer_;
  int pieceFrames_ = 0;
  std::int64_t framesDone_ = 0;
  std::vector<float> frames_, mono_, converted_;
  std::vector<std::int16_t> samples_;
  bool done_ = false;
};

}  // namespace quorl
