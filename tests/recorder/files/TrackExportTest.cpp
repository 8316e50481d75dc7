#include "recorder/files/TrackExport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <random>

#include "platform/CalendarDays.h"
#include "platform/linux/media/SndfileSoundFiles.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/files/RecordingName.h"
#include "recorder/files/WavBytes.h"

namespace quorl {
namespace {

constexpr char kExported[] = "night.wav";

class TrackExportTest : public testing::Test {
 protected:
  void PutRecording(const RecordingFormat& format, const std::vector<std::int16_t>& samples,
                    const std::vector<LogRecord>& log) {
    const auto frames = static_cast<std::int64_t>(samples.size()) / format.Channels;
    files_.Put(kExported, MakeWavHeader(format, format.DataAt() + frames * format.FrameBytes(), frames) +
                              test::SampleBytes(samples) + MakeTrailer(log));
  }
  Failure Export(SoundFileKind kind = SoundFileKind::Wav, std::optional<std::size_t> record = {}) {
    TrackExport job(files_, media_, {kExported, "out", kind, record});
    const Failure failure = Finish(job);
    written_ = job.Written();
    return failure;
  }
  std::vector<std::int16_t> Samples(const std::string& path, int rate, int channels = 1) {
    Failure failure;
    const auto reader = media_.Open(path, failure);
    if (!reader) throw std::runtime_error(failure->Text);
    EXPECT_EQ(reader->SampleRate(), rate);
    EXPECT_EQ(reader->Channels(), channels);
    std::vector<float> read(static_cast<std::size_t>(reader->Frames() * channels));
    reader->Read(read.data(), static_cast<int>(reader->Frames()), failure);
    std::vector<std::int16_t> samples;
    for (const float sample : read)
      samples.push_back(static_cast<std::int16_t>(std::lround(sample * 32768.0f)));
    return samples;
  }

  VirtualFiles files_;
  SndfileSoundFiles media_{files_};
  std::vector<std::string> written_;
};

std::vector<std::int16_t> Noise(std::size_t count) {
  std::mt19937 random(7);
  std::vector<std::int16_t> samples(count);
  for (std::int16_t& sample : samples) sample = static_cast<std::int16_t>(random());
  return samples;
}

const double kEvening = *ParseDate("2026-11-23 18:05:59");

TEST(RecordingName, HasDateAndRoundedKilohertz) {
  EXPECT_EQ(RecordingName(kEvening, 72050000), "2026-11-23 1805 7205 kHz");
  EXPECT_EQ(RecordingName(kEvening, 1984999), "2026-11-23 1805 198 kHz");
  EXPECT_EQ(RecordingName(kEvening, 1985000), "2026-11-23 1805 199 kHz");
}

// Whatever the tour, its tracks side by side are the recording again.
TEST_F(TrackExportTest, TracksSideBySideAreTheRecording) {
  std::mt19937 random(3);
  for (const RecordingFormat& format : {RecordingFormat{3000, 1, 16, {}}, RecordingFormat{6000, 1, 8, {}},
                                        RecordingFormat{48000, 2, 16, IFOrigin{2, true}}}) {
    for (const SoundFileKind kind : {SoundFileKind::Wav, SoundFileKind::Flac}) {
      const std::vector<std::int16_t> samples =
          Noise(static_cast<std::size_t>(format.Rate * 9 * format.Channels));
      std::vector<LogRecord> log;
      std::int64_t at = format.DataAt();
      for (int track = 0; track < 4; ++track) {
        const std::int64_t frames = track < 3 ? format.Rate + static_cast<int>(random() % 3000) : 100000000;
        log.push_back({kEvening + track, 72050000 + track * 10000, at, at + frames * format.FrameBytes()});
        at = log.back().End;
      }
      log.back().End = format.DataAt() + static_cast<std::int64_t>(samples.size()) * 2 + 1;
      PutRecording(format, samples, log);
      const Failure failure = Export(kind);
      ASSERT_FALSE(failure) << failure->Text;
      ASSERT_EQ(written_.size(), 4U);
      std::vector<std::int16_t> all;
      for (const std::string& path : written_) {
        const std::vector<std::int16_t> track = Samples(path, format.Rate, format.Channels);
        all.insert(all.end(), track.begin(), track.end());
        EXPECT_FALSE(files_.Remove(path));
      }
      EXPECT_EQ(all, samples);
    }
  }
}

TEST_F(TrackExportTest, FilesAreNamedAndTaggedAndNoneIsOverwritten) {
  PutRecording(
      {3000, 1, 16, {}}, Noise(9000),
      {{kEvening, 72051234, 44, 6044}, {kEvening, 72050000, 6044, 6144}, {kEvening, 72049000, 6144, 18045}});
  files_.Put("out/2026-11-23 1805 7205 kHz (2).wav", "mine");
  ASSERT_FALSE(Export());
  EXPECT_EQ(written_, (std::vector<std::string>{"out/2026-11-23 1805 7205 kHz.wav",
                                                "out/2026-11-23 1805 7205 kHz (3).wav"}));
  Failure failure;
  EXPECT_EQ(files_.Read("out/2026-11-23 1805 7205 kHz (2).wav", failure), "mine");
  const std::string first = files_.Read(written_[0], failure).value();
  for (const char* tag : {"7205 kHz", "Frequency 7205.1234 kHz", "2026-11-23 18:05:59"})
    EXPECT_NE(first.find(tag), std::string::npos) << tag;

  ASSERT_FALSE(Export(SoundFileKind::Flac, 2));
  EXPECT_EQ(written_, std::vector<std::string>{"out/2026-11-23 1805 7205 kHz.flac"});
  EXPECT_EQ(Samples(written_[0], 3000).size(), 5950U);
}

TEST_F(TrackExportTest, WhatLiesBeyondTheSamplesIsCutOrLeftOut) {
  const std::vector<std::int16_t> samples = Noise(9000);
  PutRecording({3000, 1, 16, {}}, samples,
               {{kEvening, 10000, 12044, 900044},
                {kEvening, 20000, 900044, 1900044},
                {kEvening, 30000, -5000, 6044},
                {kEvening, 40000, 6044, 100},
                {kEvening, 50000, 0, 9'000'000'000'000'000'000}});
  ASSERT_FALSE(Export());
  ASSERT_EQ(written_.size(), 3U);
  const auto part = [&](int from, int to) {
    return std::vector(samples.begin() + from, samples.begin() + to);
  };
  EXPECT_EQ(Samples(written_[0], 3000), part(6000, 9000));
  EXPECT_EQ(Samples(written_[1], 3000), part(0, 3000));
  EXPECT_EQ(Samples(written_[2], 3000), samples);

  const Failure behind = Export(SoundFileKind::Wav, 1);
  ASSERT_TRUE(behind);
  EXPECT_NE(behind->Text.find("night.wav: what is wanted lies behind the last sample"), std::string::npos);
  for (const std::size_t record : {std::size_t{3}, std::size_t{77}}) {
    const Failure none = Export(SoundFileKind::Wav, record);
    ASSERT_TRUE(none);
    EXPECT_NE(none->Text.find("has no such track"), std::string::npos) << none->Text;
  }
}

TEST_F(TrackExportTest, WhatCannotBeExportedIsTold) {
  EXPECT_TRUE(Export());
  PutRecording({3000, 1, 16, {}}, Noise(100), {});
  for (const bool foreign : {false, true}) {
    if (foreign) files_.Put(kExported, "a text");
    const Failure failure = Export();
    ASSERT_TRUE(failure);
    EXPECT_NE(failure->Text.find("has no tuning log"), std::string::npos) << failure->Text;
  }
}

TEST_F(TrackExportTest, FullDiskKeepsWholeTracksOnly) {
  PutRecording({48000, 1, 16, {}}, Noise(480000),
               {{kEvening, 72050000, 44, 480044}, {kEvening, 61000000, 480044, 960044}});
  files_.SetSpace(960044 + 1000 + 600000);
  const Failure failure = Export();
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code, ENOSPC) << failure->Text;
  EXPECT_EQ(written_, std::vector<std::string>{"out/2026-11-23 1805 7205 kHz.wav"});
  EXPECT_EQ(files_.List("out", "").size(), 1U);
}

TEST_F(TrackExportTest, ProgressRisesAndADiscardedExportLeavesNothingHalf) {
  PutRecording({48000, 1, 16, {}}, Noise(480000),
               {{kEvening, 72050000, 44, 480044}, {kEvening, 61000000, 480044, 960044}});
  TrackExport job(files_, media_, {kExported, "out", SoundFileKind::Wav, {}});
  double before = 0.0;
  while (job.Progress() < 0.75) {
    ASSERT_FALSE(job.Step());
    EXPECT_GE(job.Progress(), before);
    before = job.Progress();
  }
  EXPECT_EQ(files_.List("out", "").size(), 2U);
  job.Discard();
  EXPECT_EQ(files_.List("out", ""), std::vector<std::string>{"2026-11-23 1805 7205 kHz.wav"});
  EXPECT_EQ(job.Written().size(), 1U);
}

}  // namespace
}  // namespace quorl
