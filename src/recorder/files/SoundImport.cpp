#include "recorder/files/SoundImport.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "recorder/files/RiffReader.h"
#include "recorder/files/SampleStream.h"

namespace quorl {
namespace {

constexpr int kPieceSamples = 65536;  // of all channels together
constexpr std::int64_t kHeaderBytes = 44;
// Louder than any sound; keeps the converter's sums finite.
constexpr double kLoudest = 16.0;
constexpr double kFullScale = 32768.0;

std::uint32_t BigEndian32(const unsigned char* bytes) {
  return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
         bytes[3];
}

// An AIFF file tells its length at its begin.
Failure CheckAiff(const OpenFile& file, const unsigned char* head) {
  const std::int64_t told = std::int64_t{BigEndian32(head + 4)} + 8;
  if (told <= file.Size().value_or(told)) return {};
  return Error{SampleFault::TruncatedData, file.Name() + ": the header promises " + std::to_string(told) +
                                               " bytes, the file has " + std::to_string(*file.Size()) +
                                               "; a complete file is needed"};
}

Failure CheckRate(const std::string& name, std::int64_t rate) {
  if (rate >= SoundImport::kLowestRate && rate <= SoundImport::kHighestRate) return {};
  return Error{SoundFault::Refused, name + ": has " + std::to_string(rate) + " frames a second; " +
                                        std::to_string(SoundImport::kLowestRate) + " to " +
                                        std::to_string(SoundImport::kHighestRate) + " are needed"};
}

Failure CheckWave(OpenFile& file) {
  Failure failure;
  const auto layout = ReadWavLayout(file, failure);
  if (!failure) failure = ShortOfSamples(file, *layout);
  return failure ? failure : CheckRate(file.Name(), layout->Format.Rate);
}

// Readers of sound files take what is left of a cut one without a word.
Failure CheckWhole(const Files& files, const std::string& path) {
  Failure failure;
  const auto file = files.Open(path, OpenMode::Read, failure);
  if (failure || !file->Size()) return failure;
  unsigned char head[12] = {};
  if (file->ReadAt(0, head, sizeof head, failure) < 12 || failure) return failure;
  const auto is = [&head](const char* container, const char* kind) {
    return std::memcmp(head, container, 4) == 0 && std::memcmp(head + 8, kind, 4) == 0;
  };
  if (is("RIFF", "WAVE")) return CheckWave(*file);
  return is("FORM", "AIFF") || is("FORM", "AIFC") ? CheckAiff(*file, head) : Failure();
}

std::int16_t Clipped(float sample) {
  const double scaled = std::clamp(static_cast<double>(sample) * kFullScale, -kFullScale, kFullScale - 1.0);
  return static_cast<std::int16_t>(std::lround(scaled));
}

}  // namespace

SoundImport::SoundImport(Files& files, const SoundFiles& media, std::string from, std::string to)
    : files_(files), media_(media), from_(std::move(from)), to_(std::move(to)) {}

double SoundImport::Progress() const {
  if (done_) return 1.0;
  return reader_ ? static_cast<double>(framesDone_) / static_cast<double>(reader_->Frames()) : 0.0;
}

void SoundImport::Discard() {
  writer_.reset();
  reader_.reset();
}

Failure SoundImport::Step() {
  if (!writer_) return Begin();
  return framesDone_ < reader_->Frames() ? Piece() : End();
}

Failure SoundImport::Begin() {
  Failure failure = CheckWhole(files_, from_);
  if (failure) return failure;
  reader_ = media_.Open(from_, failure);
  if (!failure) failure = Check();
  if (!failure && reader_->SampleRate() != kRate)
    converter_ = media_.Convert(reader_->SampleRate(), kRate, failure);
  if (!failure) writer_ = WavWriter::Create(files_, to_, 1, kRate, failure);
  if (failure) return failure;
  pieceFrames_ = std::max(1, kPieceSamples / reader_->Channels());
  frames_.resize(static_cast<std::size_t>(pieceFrames_) * static_cast<std::size_t>(reader_->Channels()));
  return {};
}

Failure SoundImport::Check() const {
  const int rate = reader_->SampleRate();
  if (Failure failure = CheckRate(from_, rate)) return failure;
  if (reader_->Frames() < 1) return Fault(SoundFault::Refused, "holds no sound; a file with some is needed");
  const double seconds = static_cast<double>(reader_->Frames()) / rate;
  const double most = static_cast<double>(kMostBytes - kHeaderBytes) / (2.0 * kRate);
  if (seconds <= most) return {};
  return Fault(SoundFault::Refused, "lasts " + std::to_string(std::llround(seconds / 60.0)) +
                                        " minutes; a sound of at most " +
                                        std::to_string(static_cast<int>(most / 60.0)) + " minutes is needed");
}

Failure SoundImport::Piece() {
  Failure failure;
  const std::int64_t left = reader_->Frames() - framesDone_;
  const int wanted = static_cast<int>(std::min<std::int64_t>(pieceFrames_, left));
  const int got = reader_->Read(frames_.data(), wanted, failure);
  if (failure) return failure;
  framesDone_ += got;
  if (got < wanted) {
    return Fault(SoundFault::Damaged, "ends after " + std::to_string(framesDone_) + " of " +
                                          std::to_string(reader_->Frames()) +
                                          " frames; a complete file is needed");
  }
  Mix(got);
  if (!converter_) return Put(mono_);
  converted_.clear();
  failure = converter_->Convert(mono_, framesDone_ == reader_->Frames(), converted_);
  return failure ? failure : Put(converted_);
}

void SoundImport::Mix(int frames) {
  const auto channels = static_cast<std::size_t>(reader_->Channels());
  mono_.resize(static_cast<std::size_t>(frames));
  const float* from = frames_.data();
  for (float& sample : mono_) {
    double sum = 0.0;
    for (std::size_t channel = 0; channel < channels; ++channel) sum += static_cast<double>(*from++);
    const double mean = sum / static_cast<double>(channels);
    sample = std::isnan(mean) ? 0.0f : static_cast<float>(std::clamp(mean, -kLoudest, kLoudest));
  }
}

Failure SoundImport::Put(const std::vector<float>& samples) {
  samples_.resize(samples.size());
  std::transform(samples.begin(), samples.end(), samples_.begin(), Clipped);
  return writer_->Write(samples_.data(), static_cast<int>(samples_.size()));
}

Failure SoundImport::End() {
  Failure failure = writer_->Commit();
  done_ = !failure;
  if (done_) Discard();
  return failure;
}

}  // namespace quorl
