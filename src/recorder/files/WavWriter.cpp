#include "recorder/files/WavWriter.h"

#include <algorithm>
#include <array>
#include <bit>

#include "recorder/files/LittleEndian.h"

namespace quorl {
namespace {

// The largest number of the header's size fields says that the length is unknown.
constexpr std::int64_t kLengthUnknown = 0xFFFFFFFF;

std::int64_t Length(const std::string& bytes) {
  return static_cast<std::int64_t>(bytes.size());
}

Failure AppendSamples(GrowingFile& file, const std::int16_t* samples, int count) {
  if constexpr (std::endian::native == std::endian::little) {
    return file.Append(samples, std::int64_t{count} * 2);
  }
  std::array<std::int16_t, 1024> part;
  Failure failure;
  for (int done = 0; done < count && !failure;) {
    const int n = std::min(count - done, static_cast<int>(part.size()));
    std::copy_n(samples + done, n, part.begin());
    SwapFileOrder(part.data(), static_cast<std::size_t>(n));
    failure = file.Append(part.data(), std::int64_t{n} * 2);
    done += n;
  }
  return failure;
}

}  // namespace

std::unique_ptr<WavWriter> WavWriter::Create(Files& files, const std::string& path,
                                             const RecordingFormat& format, Failure& failure) {
  auto file = GrowingFile::Create(files, path, failure);
  if (failure) return nullptr;
  std::unique_ptr<WavWriter> writer(new WavWriter(std::move(file), format));
  const std::string header =
      MakeWavHeader(format, kLengthUnknown, (kLengthUnknown - format.DataAt()) / format.FrameBytes());
  failure = writer->file_->Append(header.data(), Length(header));
  return failure ? nullptr : std::move(writer);
}

std::int64_t WavWriter::MostDataBytes(const RecordingFormat& format) {
  const std::int64_t most = kLengthUnknown - format.DataAt() - 1;
  return most - most % format.FrameBytes();
}

Failure WavWriter::Write(const std::int16_t* samples, int count) {
  bytes_ += std::int64_t{count} * 2;
  if (bytes_ > MostDataBytes(format_)) {
    return Error{SampleFault::TooLong,
                 file_->Name() + ": a WAV file ends at 4 GB; a shorter input is needed"};
  }
  return AppendSamples(*file_, samples, count);
}

Failure WavWriter::Commit() {
  if (!file_->IsDirect()) {
    const std::string header =
        MakeWavHeader(format_, format_.DataAt() + bytes_, bytes_ / format_.FrameBytes());
    if (Failure failure = file_->WriteAt(0, header.data(), Length(header))) return failure;
    if (Failure failure = file_->Append(trailer_.data(), Length(trailer_))) return failure;
  }
  return file_->Commit();
}

}  // namespace quorl
