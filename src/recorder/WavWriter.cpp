#include "recorder/WavWriter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <string_view>

#include "recorder/LittleEndian.h"
#include "recorder/StreamIo.h"

namespace quorl {
namespace {

constexpr int HeaderBytes = 44;
constexpr std::uint32_t LengthUnknown = 0xFFFFFFFF - HeaderBytes;
constexpr std::int64_t MostDataBytes = LengthUnknown - 1;

void PutTag(unsigned char* bytes, std::string_view tag) {
  std::copy(tag.begin(), tag.end(), bytes);
}

}  // namespace

std::unique_ptr<WavWriter> WavWriter::Create(const std::string& path, int channels, int sampleRate,
                                             Failure& failure) {
  auto file = ReplacingFile::Create(path, failure);
  if (failure) return nullptr;
  std::unique_ptr<WavWriter> writer(new WavWriter(std::move(file), channels, sampleRate));
  failure = writer->WriteHeader(LengthUnknown);
  if (failure) return nullptr;
  return writer;
}

Failure WavWriter::WriteHeader(std::uint32_t dataBytes) {
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
  errno = 0;
  file_->Stream().write(reinterpret_cast<const char*>(header.data()), HeaderBytes);
  return Check();
}

Failure WavWriter::Write(const std::int16_t* samples, int count) {
  bytes_ += std::int64_t{count} * 2;
  if (bytes_ > MostDataBytes) {
    return Error{SampleFault::TooLong,
                 file_->Name() + ": a WAV file ends at 4 GB; a shorter input is needed"};
  }
  errno = 0;
  WriteSamples(file_->Stream(), samples, count);
  return Check();
}

Failure WavWriter::Commit() {
  errno = 0;
  file_->Stream().flush();
  if (Failure failure = Check()) return failure;
  if (file_->Stream().seekp(0)) {
    if (Failure failure = WriteHeader(static_cast<std::uint32_t>(bytes_))) return failure;
  } else {
    file_->Stream().clear();
  }
  return file_->Commit();
}

Failure WavWriter::Check() const {
  if (file_->Stream()) return std::nullopt;
  return IoError(file_->Name(), "can't be written");
}

}  // namespace quorl
