#include <gtest/gtest.h>

#include <random>

#include "platform/CalendarDays.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/files/RecordingHeader.h"

namespace quorl {
namespace {

constexpr char kFile[] = "/music/night.wav";

LogRecord Tuned(std::int32_t freq, std::int64_t start, std::int64_t end, double when = 46349.75) {
  return {when, freq, start, end};
}

std::string FileOf(const RecordingFormat& format, std::int64_t frames, const std::vector<LogRecord>& log) {
  const std::int64_t bytes = format.DataAt() + frames * format.FrameBytes();
  return MakeWavHeader(format, bytes, frames) +
         std::string(static_cast<std::size_t>(frames * format.FrameBytes()), 'x') + MakeTrailer(log);
}

RecordingRead ReadBack(const std::string& content) {
  VirtualFiles files;
  files.Put(kFile, content);
  Failure failure;
  const auto file = files.Open(kFile, OpenMode::Read, failure);
  return ReadRecording(*file);
}

TEST(RecordingHeader, StandsToTheByte) {
  const std::string header = MakeWavHeader({12000, 1, 16, {}}, 44 + 2000, 1000);
  const std::string expected(
      "RIFF\xF4\x07\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\xE0\x2E\0\0\xC0\x5D\0\0\x02\0\x10\0data\xD0\x07\0\0",
      44);
  EXPECT_EQ(header, expected);
  const WavHeader narrow = ParseWavHeader(MakeWavHeader({48000, 1, 8, {}}, 44 + 2000, 1000));
  EXPECT_EQ(narrow.DataSize, 1000U);
  EXPECT_EQ(narrow.RiffSize, 36U + 2000U);
  EXPECT_EQ(narrow.BytesPerSecond, 48000U);
  EXPECT_EQ(narrow.BlockAlign, 1);
}

TEST(RecordingLog, TrailerStandsToTheByte) {
  const double when = *ParseDate("2026-11-23 18:05:09");
  const std::string trailer = MakeTrailer({Tuned(72050000, 44, 1045, when), Tuned(0, 1, 2)});
  ASSERT_EQ(trailer.size(), 5U + static_cast<std::size_t>(kLogRecordBytes));
  std::string text;
  for (std::size_t i = 5; i < trailer.size(); i += 2) {
    text += trailer[i];
    EXPECT_EQ(trailer[i + 1], '\0');
  }
  const std::string expected(
      "F=0072050000\x04T=2026-11-23 18:05:09\x04S=0000000044\x04"
      "E=0000001045\x04\0",
      62);
  EXPECT_EQ(text, expected);
  EXPECT_EQ(MakeTrailer({}), "QUORL");
}

TEST(RecordingFile, ReadsBackWhatWasWritten) {
  std::mt19937 random(1);
  for (int round = 0; round < 200; ++round) {
    RecordingFormat format{48000 >> random() % 5, 1, random() % 2 == 0 ? 8 : 16, {}};
    if (random() % 3 == 0) {
      format = {48000, 1 + static_cast<std::int32_t>(random() % 2), 16,
                IFOrigin{static_cast<std::int32_t>(random() % 4), random() % 2 == 0}};
    }
    std::vector<LogRecord> log(random() % 20);
    for (LogRecord& record : log) {
      record = Tuned(1 + static_cast<std::int32_t>(random() % 300000000), random() % 100000,
                     random() % 100000, static_cast<double>(random() % 4000000) / 86400.0 + 46000.0);
      record.When = *ParseDate(DateText(record.When));
    }
    const auto frames = static_cast<std::int64_t>(random() % 3000);
    const RecordingRead read = ReadBack(FileOf(format, frames, log));
    ASSERT_TRUE(read.Own);
    EXPECT_EQ(read.Own->Format, format);
    EXPECT_EQ(read.Own->Frames(), frames);
    EXPECT_EQ(read.Own->Log, log);
    EXPECT_EQ(read.Own->LogStart, format.DataAt() + frames * format.FrameBytes() + 1);
  }
}

TEST(RecordingFile, WithoutTrailerOrWithAForeignOneHasNoTracks) {
  const std::string whole = FileOf({}, 100, {Tuned(72050000, 44, 244)});
  const RecordingRead bare = ReadBack(whole.substr(0, 244));
  ASSERT_TRUE(bare.Own);
  EXPECT_TRUE(bare.Own->Log.empty());
  EXPECT_EQ(bare.Own->LogStart, 0);
  std::string foreign = whole;
  foreign[244] = 'q';
  EXPECT_EQ(ReadBack(foreign).Own->LogStart, 0);
  const RecordingRead cut = ReadBack(whole.substr(0, whole.size() - 4));
  EXPECT_TRUE(cut.Own->Log.empty());
}

TEST(RecordingFile, OfAnotherProgramOrBrokenIsToldApart) {
  EXPECT_FALSE(ReadBack("").Own);
  EXPECT_FALSE(ReadBack("no sound at all, but more than forty-four bytes long it is").Own);
  EXPECT_FALSE(ReadBack(FileOf({44100, 1, 16, {}}, 10, {})).Own);
  EXPECT_FALSE(ReadBack(FileOf({48000, 2, 16, {}}, 10, {})).Own);
  std::string trueEightBits = FileOf({48000, 1, 8, {}}, 10, {});
  trueEightBits[4] = static_cast<char>(36 + 10);
  EXPECT_FALSE(ReadBack(trueEightBits).Own);

  std::string huge = FileOf({}, 100, {});
  for (std::size_t i = 40; i < 44; ++i) huge[i] = '\xFF';
  const RecordingRead read = ReadBack(huge);
  EXPECT_FALSE(read.Own);
  ASSERT_TRUE(read.Fault);
  EXPECT_NE(read.Fault->Text.find(kFile), std::string::npos);
}

TEST(RecordingLog, StrangeFieldsAreZeroOrPassedOver) {
  const auto wide = [](const std::string& text) {
    std::string bytes;
    for (const char c : text) bytes += std::string{c, '\0'};
    return bytes;
  };
  LogUnpacker unpacker;
  unpacker.Take(
      wide(std::string("F=12x\x04Z=5\x04T=2026-02-30 00:00:00\x04S=7\x04\0F=99999999999\x04"
                       "E=3\x04\0F=5",
                       57)));
  ASSERT_EQ(unpacker.Records.size(), 2U);
  EXPECT_EQ(unpacker.Records[0], Tuned(0, 7, 0, 0.0));
  EXPECT_EQ(unpacker.Records[1], Tuned(0, 0, 3, 0.0));
}

TEST(RecordingLog, FindsTheFirstRecordThatHoldsAPosition) {
  const std::vector<LogRecord> log{Tuned(1, 44, 100), Tuned(2, 100, 100), Tuned(3, 100, 300)};
  EXPECT_EQ(FindRecord(log, 43), -1);
  EXPECT_EQ(FindRecord(log, 100), 0);
  EXPECT_EQ(FindRecord(log, 101), 2);
  EXPECT_EQ(FindRecord(log, 301), -1);
}

TEST(CalendarDays, CountDaysAndReadTheirOwnTexts) {
  EXPECT_EQ(*ParseDate("1899-12-30 00:00:00"), 0.0);
  EXPECT_EQ(*ParseDate(" 1900-01-01 12:00:00 "), 2.5);
  EXPECT_EQ(DateText(*ParseDate("2026-12-31 23:59:59") + 0.6 / 86400.0), "2027-01-01 00:00:00");
  for (const char* bad : {"2026-13-01 00:00:00", "2025-02-29 00:00:00", "2026-01-01 24:00:00", "2026-01-01",
                          "2026-1-01 00:00:00", "-026-01-01 00:00:00", "2026-01-01 00:00:00x"}) {
    EXPECT_FALSE(ParseDate(bad)) << bad;
  }
}

}  // namespace
}  // namespace quorl
