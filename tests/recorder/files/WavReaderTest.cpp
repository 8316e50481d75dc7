#include "recorder/files/WavReader.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "platform/linux/system/LinuxFiles.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/files/RawStream.h"
#include "recorder/files/WavBytes.h"

namespace quorl {
namespace {

using test::Chunk;
using test::ExtensibleBody;
using test::FormatBody;
using test::Riff;
using test::SampleBytes;
using test::WavFile;

const std::vector<std::int16_t> Samples = {0, 1, -1, 32767, -32768, 256, -257, 12345};

std::unique_ptr<WavReader> Open(const VirtualFiles& files, Failure& failure) {
  return WavReader::Open(files, "a.wav", WavNeeds{}, failure);
}

std::vector<std::int16_t> ReadAll(SampleReader& reader, Failure& failure, int blockFrames = 3) {
  std::vector<std::int16_t> all, block(static_cast<std::size_t>(blockFrames * reader.Channels()));
  for (int got = blockFrames; got == blockFrames && !failure;) {
    got = reader.Read(block.data(), blockFrames, failure);
    all.insert(all.end(), block.begin(), block.begin() + got * reader.Channels());
  }
  return all;
}

struct GoodCase {
  const char* Name;
  std::string Bytes;
  int Channels;
};

TEST(WavReader, ReadsEveryLayoutFromFilesAndPipes) {
  const std::string format = Chunk("fmt ", FormatBody({})), data = Chunk("data", SampleBytes(Samples));
  const std::vector<GoodCase> cases = {
      {"mono", Riff(format + data), 1},
      {"stereo", WavFile(Samples, {1, 2}), 2},
      {"extensible", Riff(Chunk("fmt ", ExtensibleBody(2, 1)) + data), 2},
      {"format chunk with an extra field",
       Riff(Chunk("fmt ", FormatBody({}) + std::string("\1\0x", 3)) + data), 1},
      {"chunks before the samples", Riff(Chunk("odd ", "x") + format + Chunk("LIST", "INFO") + data), 1},
      {"bytes after the samples", Riff(format + data) + "QUORLtrailer", 1},
      {"wrong RIFF size", "RIFF" + test::U32(0) + "WAVE" + format + data, 1},
  };
  for (const GoodCase& good : cases) {
    for (const bool pipe : {false, true}) {
      SCOPED_TRACE(std::string(good.Name) + (pipe ? ", pipe" : ", file"));
      Failure failure;
      VirtualFiles files;
      pipe ? files.PutPipe("a.wav", good.Bytes) : files.Put("a.wav", good.Bytes);
      auto reader = Open(files, failure);
      ASSERT_TRUE(reader) << failure->Text;
      EXPECT_EQ(reader->Channels(), good.Channels);
      EXPECT_EQ(reader->Frames(), 8 / good.Channels);
      EXPECT_EQ(ReadAll(*reader, failure), Samples);
      EXPECT_FALSE(failure);
    }
  }
}

struct BadWav {
  std::string Bytes;
  int Code;
  const char* Told;  // what is wrong
  const char* Needed;
};

TEST(WavReader, TellsWhatIsWrongAndWhatIsNeeded) {
  const std::string good = WavFile(Samples), data = Chunk("data", SampleBytes(Samples));
  const std::string format = Chunk("fmt ", FormatBody({}));
  const std::vector<BadWav> cases = {
      {"", SampleFault::NotWave, "not a RIFF/WAVE file", "16-bit PCM is needed"},
      {"plain text, long enough", SampleFault::NotWave, "not a RIFF/WAVE file", "16-bit PCM is needed"},
      {"RIFF" + test::U32(4) + "AVI " + format + data, SampleFault::NotWave, "not a RIFF/WAVE", "WAV file"},
      {good.substr(0, 7), SampleFault::TruncatedHeader, "within the RIFF header", "complete WAV header"},
      {good.substr(0, 30), SampleFault::TruncatedHeader, "within the format chunk", "complete"},
      {good.substr(0, 40), SampleFault::TruncatedHeader, "before a \"data\" chunk", "complete"},
      {Riff("LIST" + test::U32(900) + "x"), SampleFault::TruncatedHeader, "within the chunk \"LIST\"",
       "complete"},
      {Riff(Chunk("fmt ", "12345678") + data), SampleFault::TruncatedHeader, "has 8 bytes", "at least 16"},
      {Riff(data + format), SampleFault::TruncatedHeader, "before any format chunk", "needed first"},
      {WavFile(Samples, {1, 1, 44100}), SampleFault::Format, "rate is 44100 Hz", "48000 Hz is needed"},
      {WavFile(Samples, {1, 1, 48000, 8}), SampleFault::Format, "8 bits", "16 are needed"},
      {WavFile(Samples, {1, 1, 48000, 24}), SampleFault::Format, "24 bits", "16 are needed"},
      {WavFile(Samples, {1, 0}), SampleFault::Format, "0 channels", "1 to 2 are needed"},
      {WavFile(Samples, {1, 6}), SampleFault::Format, "6 channels", "1 to 2 are needed"},
      {WavFile(Samples, {3, 1, 48000, 32}), SampleFault::Format, "format 3", "PCM is needed"},
      {Riff(Chunk("fmt ", FormatBody({}).replace(12, 1, "\4")) + data), SampleFault::Format, "4 bytes",
       "2 are"},
      {Riff(Chunk("fmt ", ExtensibleBody(2, 3)) + data), SampleFault::Format, "format 65534",
       "PCM is needed"},
      {Riff(format + "data" + test::U32(1 << 30) + SampleBytes(Samples)), SampleFault::TruncatedData,
       "promises 1073741824 bytes of samples, the file ends after 16", "complete file"},
      {Riff(format + "data" + test::U32(15) + SampleBytes(Samples)), SampleFault::OddLength, "15 bytes",
       "frames of 2 bytes"},
      {Riff(Chunk("fmt ", FormatBody({1, 2})) + "data" + test::U32(14) + SampleBytes(Samples)),
       SampleFault::OddLength, "14 bytes", "frames of 4 bytes"},
  };
  for (const BadWav& bad : cases) {
    SCOPED_TRACE(bad.Told);
    Failure failure;
    VirtualFiles files;
    files.Put("a.wav", bad.Bytes);
    EXPECT_FALSE(Open(files, failure));
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->Code, bad.Code);
    EXPECT_EQ(failure->Text.rfind("a.wav: ", 0), 0U) << failure->Text;
    EXPECT_NE(failure->Text.find(bad.Told), std::string::npos) << failure->Text;
    EXPECT_NE(failure->Text.find(bad.Needed), std::string::npos) << failure->Text;
  }
}

TEST(WavReader, PipeThatEndsEarlyOrBreaksIsToldAfterItsLastSample) {
  const std::string cut = WavFile(Samples).substr(0, 44 + 9);
  for (const bool breaks : {false, true}) {
    Failure failure;
    VirtualFiles files;
    files.PutPipe("a.wav", cut, breaks);
    auto reader = Open(files, failure);
    ASSERT_TRUE(reader);
    EXPECT_EQ(ReadAll(*reader, failure).size(), 4U);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->Code > 0, breaks) << failure->Text;
    const bool tellsHowMuch = failure->Text.find("ends 4 frames before") != std::string::npos;
    EXPECT_EQ(tellsHowMuch, !breaks) << failure->Text;
  }
}

TEST(WavReader, FileThatIsMissingOrADirectoryIsRefusedByName) {
  for (const std::string path : {"/no/such/file.wav", "/"}) {
    Failure failure;
    EXPECT_FALSE(WavReader::Open(LinuxFiles(), path, WavNeeds{}, failure));
    ASSERT_TRUE(failure);
    EXPECT_GT(failure->Code, 0);
    EXPECT_NE(failure->Text.find(path + ": "), std::string::npos) << failure->Text;
  }
}

TEST(RawReader, ReadsWholeFramesAndTellsOfAHalfOne) {
  std::istringstream whole(SampleBytes(Samples)), odd(SampleBytes(Samples) + "x");
  for (std::istringstream* in : {&whole, &odd}) {
    RawReader reader(*in, "standard input", 2);
    Failure failure;
    EXPECT_EQ(ReadAll(reader, failure), Samples);
    EXPECT_EQ(failure ? failure->Code : 0, in == &odd ? SampleFault::OddLength : 0);
  }
}

}  // namespace
}  // namespace quorl
