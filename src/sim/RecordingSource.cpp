#include "sim/RecordingSource.h"

#include <algorithm>

namespace quorl {

std::unique_ptr<RecordingSource> RecordingSource::Open(Opener opener, Failure& failure) {
  auto reader = opener(failure);
  if (!reader) return nullptr;
  if (reader->Frames() == 0) {
    failure = Error{SampleFault::TruncatedData, "The recording holds no samples; choose another file"};
    return nullptr;
  }
  return std::unique_ptr<RecordingSource>(new RecordingSource(std::move(opener), std::move(reader)));
}

bool RecordingSource::Rewind() {
  // An opening that gave nothing would be repeated for ever.
  if (fault_ || !gaveSamples_) return false;
  reader_ = opener_(fault_);
  gaveSamples_ = false;
  return reader_ != nullptr && reader_->Channels() == channels_;
}

void RecordingSource::Render(std::int16_t* interleaved, int frames) {
  int done = 0;
  while (done < frames && reader_ && !fault_) {
    const int got = reader_->Read(interleaved + channels_ * done, frames - done, fault_);
    gaveSamples_ = gaveSamples_ || got > 0;
    done += got;
    if (done < frames && !Rewind()) break;
  }
  std::fill(interleaved + channels_ * done, interleaved + channels_ * frames, std::int16_t{0});
  if (channels_ == 2) return;
  // From the end, so that no sample is overwritten before it has moved.
  for (int n = frames - 1; n >= 0; --n) {
    interleaved[2 * n] = interleaved[n];
    interleaved[2 * n + 1] = 0;
  }
}

}  // namespace quorl
