#include "recorder/files/RawStream.h"

#include <cerrno>

#include "recorder/files/LittleEndian.h"
#include "recorder/files/StreamIo.h"

namespace quorl {

int RawReader::Read(std::int16_t* interleaved, int frames, Failure& failure) {
  const int frameBytes = 2 * channels_;
  const std::int64_t bytes =
      ReadBytes(in_, interleaved, static_cast<std::int64_t>(frames) * frameBytes, name_, failure);
  const int whole = static_cast<int>(bytes / frameBytes);
  if (bytes % frameBytes != 0 && !failure) {
    failure = Error{SampleFault::OddLength, name_ + ": ends within a frame; a whole number of frames of " +
                                                std::to_string(frameBytes) + " bytes is needed"};
  }
  SwapFileOrder(interleaved, static_cast<std::size_t>(whole) * static_cast<std::size_t>(channels_));
  return whole;
}

Failure RawWriter::Write(const std::int16_t* samples, int count) {
  errno = 0;
  WriteSamples(out_, samples, count);
  return Check();
}

Failure RawWriter::Commit() {
  errno = 0;
  out_.flush();
  return Check();
}

Failure RawWriter::Check() {
  if (out_) return {};
  return IoError(name_, "can't be written");
}

}  // namespace quorl
