#include "recorder/files/WavWriter.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/system/LinuxFiles.h"
#include "recorder/files/RawStream.h"
#include "recorder/files/WavBytes.h"
#include "recorder/files/WavReader.h"

namespace quorl {
namespace {

namespace fs = std::filesystem;

const std::vector<std::int16_t> Written = {0, 1, -1, 32767, -32768, 258};

class WavWriterTest : public testing::Test {
 protected:
  WavWriterTest()
      : folder_(
            fs::path(testing::TempDir()) /
            (std::string("wav-writer-") + testing::UnitTest::GetInstance()->current_test_info()->name())) {
    fs::remove_all(folder_);
    fs::create_directory(folder_);
  }
  ~WavWriterTest() override { fs::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  void Put(const std::string& name, const std::string& content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
  }
  std::string Get(const std::string& name) const {
    std::ostringstream content;
    content << std::ifstream(Path(name), std::ios::binary).rdbuf();
    return content.str();
  }
  std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }
  Failure WriteSamples(const std::string& name, bool commit) const {
    Failure failure;
    auto writer = WavWriter::Create(files_, Path(name), 1, 48000, failure);
    if (!failure) failure = writer->Write(Written.data(), 4);
    if (!failure) failure = writer->Write(Written.data() + 4, 2);
    if (!failure && commit) failure = writer->Commit();
    return failure;
  }

  mutable LinuxFiles files_;
  fs::path folder_;
};

TEST_F(WavWriterTest, CommittedFileIsAWavFileByteForByte) {
  EXPECT_FALSE(WriteSamples("a.wav", true));
  EXPECT_EQ(Get("a.wav"), test::WavFile(Written));
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(WavWriterTest, TargetStaysAsItWasUntilCommit) {
  Put("a.wav", "old");
  EXPECT_FALSE(WriteSamples("a.wav", false));
  EXPECT_EQ(Get("a.wav"), "old");
  EXPECT_FALSE(WriteSamples("new.wav", false));
  EXPECT_EQ(FilesInFolder(), 1U);

  fs::permissions(Path("a.wav"), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_FALSE(WriteSamples("a.wav", true));
  EXPECT_EQ(Get("a.wav"), test::WavFile(Written));
  EXPECT_EQ(fs::status(Path("a.wav")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(WavWriterTest, SymbolicLinkStaysALink) {
  Put("real.wav", "old");
  fs::create_symlink("real.wav", folder_ / "link.wav");
  EXPECT_FALSE(WriteSamples("link.wav", true));
  EXPECT_TRUE(fs::is_symlink(fs::symlink_status(folder_ / "link.wav")));
  EXPECT_EQ(Get("real.wav"), test::WavFile(Written));
}

TEST_F(WavWriterTest, TargetThatCantBeWrittenIsRefusedByName) {
  for (const std::string name : {"no/such/folder/a.wav", "."}) {
    const Failure failure = WriteSamples(name, true);
    ASSERT_TRUE(failure);
    EXPECT_GT(failure->Code, 0);
    EXPECT_NE(failure->Text.find(Path(name) + ": "), std::string::npos) << failure->Text;
  }
  EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(WavWriterTest, PipeIsWrittenInPlaceWithItsLengthUnknown) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  std::string read;
  std::thread reader([&] { read = Get("pipe"); });
  EXPECT_FALSE(WriteSamples("pipe", true));
  reader.join();
  EXPECT_TRUE(fs::is_fifo(Path("pipe")));
  EXPECT_EQ(FilesInFolder(), 1U);
  ASSERT_EQ(read.size(), 44U + 2 * Written.size());
  EXPECT_EQ(read.substr(44), test::SampleBytes(Written));
  EXPECT_GT(GetU32(reinterpret_cast<const unsigned char*>(&read[40])), 4000000000U);
}

TEST_F(WavWriterTest, EndsAtFourGigabytesWithAWord) {
  Failure failure;
  auto writer = WavWriter::Create(files_, Path("a.wav"), 1, 48000, failure);
  ASSERT_TRUE(writer) << failure->Text;
  EXPECT_FALSE(writer->Write(Written.data(), 6));
  // Refused before a sample of it is looked at.
  failure = writer->Write(Written.data(), static_cast<int>((4294967296 - 46) / 2 - 5));
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code, SampleFault::TooLong);
}

TEST_F(WavWriterTest, RawWriterTellsOfAFailedStream) {
  std::ostringstream out;
  RawWriter writer(out, "standard output");
  EXPECT_FALSE(writer.Write(Written.data(), 6));
  EXPECT_FALSE(writer.Commit());
  EXPECT_EQ(out.str(), test::SampleBytes(Written));
  out.setstate(std::ios::badbit);
  const Failure failure = writer.Write(Written.data(), 6);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Text.rfind("standard output: ", 0), 0U) << failure->Text;
}

}  // namespace
}  // namespace quorl
