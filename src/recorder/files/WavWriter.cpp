#include "recorder/files/WavWriter.h"

#include <algorithm>
#include <bit>
#include <string_view>

#include "recorder/files/LittleEndian.h"

namespace quorl {
namespace {

constexpr int HeaderBytes = 44;
constexpr std::uint32_t LengthUnknown = 0xFFFFFFFF - HeaderBytes;
constexpr std::int64_t MostDataBytes = LengthUnknown - 1;

void PutTag(unsigned char* bytes, std::string_view tag) {
  std::copy(tag.begin(), tag.end(), bytes);
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

std::unique_ptr<WavWriter> WavWriter::Create(Files& files, const std::string& path, int channels,
                                             int sampleRate, Failure& failure) {
  auto file = GrowingFile::Create(files, path, failure);
  if (failure) return nullptr;
  std::unique_ptr<WavWriter> writer(new WavWriter(std::move(file), channels, sampleRate));
  failure = writer->file_->Append(writer->Header(LengthUnknown).data(), HeaderBytes);
  return failure ? nullptr : std::move(writer);
}

std::array<unsigned char, HeaderBytes> WavWriter::Header(std::uint32_t dataBytes) const {
  std::array<unsigned char, HeaderBytes> header{};
  const auto channels = static_cast<std::uint16_t>(channels_);
  const auto rate = static_cast<std::uint32_t>(sampleRate_);
  PutTag(&header[0], "RIFF");
  PutU32(&header[4], dataBytes + HeaderBytes - 8);
  PutTag(&header[8], "WAVEfmt ");
  PutU32(&header[16], 16);
  PutU16(&header[20], 1);
  PutU16(&header[22], channels);
  PutU32(&header[24], rate);
  PutU32(&header[28], rate * channels * 2);
  PutU16(&header[32], static_cast<std::uint16_t>(channels * 2));
  PutU16(&header[34], 16);
  PutTag(&header[36], "data");
  PutU32(&header[40], dataBytes);
  return header;
}

Failure WavWriter::Write(const std::int16_t* samples, int count) {
  bytes_ += std::int64_t{count} * 2;
  if (bytes_ > MostDataBytes) {
    return Error{SampleFault::TooLong,
                 file_->Name() + ": a WAV file ends at 4 GB; a shorter input is needed"};
  }
  return AppendSamples(*file_, samples, count);
}

Failure WavWriter::Commit() {
  if (!file_->IsDirect()) {
    const auto header = Header(static_cast<std::uint32_t>(bytes_));
    if (Failure failure = file_->WriteAt(0, header.data(), HeaderBytes)) return failure;
  }
  return file_->Commit();
}

}  // namespace quorl
