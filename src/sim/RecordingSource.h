// A recording of an IF or of an I/Q pair, played over and over as if it were the antenna.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/SampleSource.h"
#include "recorder/files/SampleStream.h"
#include "support/Error.h"

namespace quorl {

class RecordingSource final : public SampleSource {
 public:
  // Opens the recording at its first sample: 16 bit, 48000 Hz, one or two channels. Called again at each end.
  using Opener = std::function<std::unique_ptr<SampleReader>(Failure& failure)>;

  // Null with `failure` set where the first opening fails or gives no samples.
  static std::unique_ptr<RecordingSource> Open(Opener opener, Failure& failure);

  // One channel plays on the left with silence on the right. After a failure: silence.
  void Render(std::int16_t* interleaved, int frames) override;
  int Channels() const { return channels_; }
  // What ended the recording early.
  const Failure& Fault() const { return fault_; }

 private:
  RecordingSource(Opener opener, std::unique_ptr<SampleReader> reader)
      : opener_(std::move(opener)), reader_(std::move(reader)), channels_(reader_->Channels()) {}
  bool Rewind();

  Opener opener_;
  std::unique_ptr<SampleReader> reader_;
  int channels_;
  bool gaveSamples_ = false;  // since the last opening
  Failure fault_;
};

}  // namespace quorl
