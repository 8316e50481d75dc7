#include "shared/PostedWav.h"

#include <gtest/gtest.h>

#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/files/LittleEndian.h"
#include "shared/TuningLog.h"
#include "state/PublicConstants.h"

namespace quorl {
namespace {

class PostedWavTest : public testing::Test {
 protected:
  std::unique_ptr<PostedWav> Create(const RecordingFormat& format = {}) {
    Failure failure;
    auto file = PostedWav::Create(files_, worker_, "/a.wav", format, failure);
    EXPECT_FALSE(failure);
    return file;
  }
  // One block after the other, as the radio brings them; each sample tells its place.
  void Play(PostedWav& file, int blocks) {
    for (int i = 0; i < blocks; ++i) {
      std::vector<std::int16_t> left(SamplesPerEvent), right(SamplesPerEvent);
      for (std::size_t n = 0; n < left.size(); ++n) {
        left[n] = static_cast<std::int16_t>((file.Frames() + static_cast<std::int64_t>(n)) % 30011);
        right[n] = static_cast<std::int16_t>(-left[n]);
      }
      file.Take(left.data(), right.data());
      queue_.AdvanceBy(std::chrono::microseconds{42667});
      file.Flush();
    }
  }
  // The file as 16-bit words.
  std::vector<std::int16_t> Words() const {
    Failure failure;
    const std::string bytes = files_.Read("/a.wav", failure).value_or("");
    std::vector<std::int16_t> words(bytes.size() / 2);
    for (std::size_t i = 0; i < words.size(); ++i) {
      words[i] = static_cast<std::int16_t>(GetU16(reinterpret_cast<const unsigned char*>(&bytes[2 * i])));
    }
    return words;
  }

  VirtualClock clock_;
  VirtualEventQueue queue_{clock_};
  VirtualFiles files_;
  VirtualFileWorker worker_{queue_};
};

TEST_F(PostedWavTest, ADiskThatStandsStillForHalfAMinuteCostsNothing) {
  const RecordingFormat format{48000, 2, 16, IFOrigin{2, true}};
  auto file = Create(format);
  Play(*file, 50);
  worker_.Stall();
  Play(*file, 700);
  worker_.Resume();
  Play(*file, 33);
  EXPECT_FALSE(file->Close(nullptr));
  const std::vector<std::int16_t> words = Words();
  ASSERT_EQ(words.size(), 40U + 2 * 783 * 2048);
  for (std::size_t frame = 0; frame < 783 * 2048; ++frame) {
    ASSERT_EQ(words[40 + 2 * frame], static_cast<std::int16_t>(frame % 30011));
    ASSERT_EQ(words[41 + 2 * frame], -static_cast<std::int16_t>(frame % 30011));
  }
}

TEST_F(PostedWavTest, OneThatStandsStillForLongerIsToldAndWhatWasTakenIsKept) {
  auto file = Create();
  worker_.Stall();
  Play(*file, 2000);
  ASSERT_TRUE(file->Fault());
  EXPECT_NE(file->Fault()->Text.find("/a.wav: the disk is too slow"), std::string::npos);
  const Failure told = file->Close(nullptr);
  EXPECT_TRUE(told);
  EXPECT_GE(file->Frames(), PostedWav::kMostBlocks * 2048);
  EXPECT_EQ(static_cast<std::int64_t>(Words().size()), 22 + file->Frames());
}

TEST(TuningLog, NotesEachChangeWhereItHappened) {
  TuningLog log({48000, 2, 16, IFOrigin{2, true}});
  const LocalTime now{2026, 11, 23, 20, 15, 0, 0};
  log.Note(70500000, 0, now);
  log.Note(70500999, 2048, now);
  log.Note(70501000, 4096, now);
  log.Note(70501000, 6144, now);
  const std::vector<LogRecord> closed = log.Closed(8192);
  ASSERT_EQ(closed.size(), 2U);
  EXPECT_EQ(closed[0].Freq, 70500000);
  EXPECT_EQ(closed[0].End, 80 + 4 * 4096);
  EXPECT_EQ(closed[1].Freq, 70501000);
  EXPECT_EQ(closed[1].Start, 80 + 4 * 4096);
  EXPECT_EQ(closed[1].End, 80 + 4 * 8192 + 1);
}

}  // namespace
}  // namespace quorl
