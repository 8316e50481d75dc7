#include "OfflineReceiver.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "platform/linux/system/LinuxClock.h"
#include "receiver/Receiver.h"
#include "shared/AudioFile.h"
#include "shared/JsonReport.h"

namespace quorl::cli {
namespace {

// Stands in for the sound card, whose volume control a file doesn't have.
class FileOutput final : public SoundOutput {
 public:
  void SetOutputAttenuation(std::int32_t hundredthsOfDecibel) override { attenuation_ = hundredthsOfDecibel; }
  void Output(const std::int16_t*, const std::int16_t*) override {}

  void Attenuate(std::int16_t* block) const { quorl::Attenuate(block, attenuation_, block); }

 private:
  std::int32_t attenuation_ = 0;
};

// Largest magnitude of a block.
int Peak(const std::int16_t* block) {
  int peak = 0;
  for (int n = 0; n < SamplesPerEvent; ++n) peak = std::max(peak, std::abs(int{block[n]}));
  return peak;
}

}  // namespace

struct OfflineReceiver::Parts {
  LinuxClock Clock;
  FileOutput Sound;
  NoRecorder Recorder;
  Receiver Radio{Clock, Sound, Recorder, [] {}};
  std::int64_t Blocks = 0;
  int PeakIn = 0;
  int PeakOut = 0;
  double Microseconds = 0.0;
  double MaxMicroseconds = 0.0;
};

OfflineReceiver::OfflineReceiver(const ReceiveOptions& options) : parts_(std::make_unique<Parts>()) {
  parts_->Radio.Initialise();
  ApplyReceiveOptions(options, parts_->Radio);
  parts_->Radio.Housekeeping();
}

OfflineReceiver::~OfflineReceiver() = default;

void OfflineReceiver::Process(std::int16_t* left, const std::int16_t* right) {
  Parts& p = *parts_;
  p.PeakIn = std::max(p.PeakIn, Peak(left));
  p.Radio.Pump.SoundCard_DataReady(left, right);
  p.Radio.Housekeeping();
  p.Sound.Attenuate(left);
  p.PeakOut = std::max(p.PeakOut, Peak(left));
  ++p.Blocks;
  p.Microseconds += p.Radio.Pump.PumpMicroseconds;
  p.MaxMicroseconds = std::max(p.MaxMicroseconds, p.Radio.Pump.PumpMicroseconds);
}

ReceptionReport OfflineReceiver::Report() const {
  const Parts& p = *parts_;
  ReceptionReport report;
  report.Blocks = p.Blocks;
  report.SignalLevel = p.Radio.MeanSignalLevel();
  report.AGCGain = p.Radio.Vars.AGCMeterGain;
  report.PeakIn = p.PeakIn;
  report.PeakOut = p.PeakOut;
  report.BlockMeanMicroseconds = p.Blocks > 0 ? p.Microseconds / static_cast<double>(p.Blocks) : 0.0;
  report.BlockMaxMicroseconds = p.MaxMicroseconds;
  return report;
}

Receiver& OfflineReceiver::Radio() {
  return parts_->Radio;
}

void PrintReport(const ReceptionReport& report, std::int64_t frames, double elapsedSeconds) {
  const double seconds = static_cast<double>(frames) / FSampling;
  JsonReport()
      .Add("blocks", report.Blocks)
      .Add("seconds", seconds, 3)
      .Add("signal_level", report.SignalLevel, 3)
      .Add("agc_gain", report.AGCGain, 6)
      .Add("peak_in", report.PeakIn)
      .Add("peak_out", report.PeakOut)
      .Add("us_per_block_mean", report.BlockMeanMicroseconds, 2)
      .Add("us_per_block_max", report.BlockMaxMicroseconds, 2)
      .Add("times_real_time", elapsedSeconds > 0.0 ? seconds / elapsedSeconds : 0.0, 1)
      .Print();
}

}  // namespace quorl::cli
