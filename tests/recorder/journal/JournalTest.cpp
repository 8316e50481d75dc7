// What a journal that was written, torn or filled up gives back.
#include <gtest/gtest.h>

#include <numeric>

#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/journal/JournalReader.h"
#include "recorder/journal/JournalWriter.h"
#include "recorder/journal/RecordingParts.h"

namespace quorl {
namespace {

using std::chrono::milliseconds;

constexpr char kPath[] = "music/~QUORLWAV.JNL";
constexpr std::int32_t kHalf = 64;

class JournalTest : public testing::Test {
 protected:
  void SetUp() override {
    files.Put("music/other.wav", "");
    writer.OnFault = [this](const Error& error) { faults.push_back(error); };
    writer.Begin({format, kHalf, 1});
  }

  void Work() { queue.AdvanceBy(milliseconds(1000)); }

  // `count` samples, each of which tells its number within the whole recording.
  void Feed(std::int64_t half, std::int32_t offset, std::int32_t count) {
    std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
    std::iota(samples.begin(), samples.end(), static_cast<std::int16_t>(half * kHalf + offset));
    writer.NoteSamples(half, offset, samples.data(), count);
  }

  void FeedHalf(std::int64_t half) {
    for (std::int32_t offset = 0; offset < kHalf; offset += 16) Feed(half, offset, 16);
  }

  std::optional<Journal> Read() {
    Failure failure;
    const auto file = files.Open(kPath, OpenMode::Read, failure);
    return file ? ReadJournal(*file, failure) : std::nullopt;
  }

  // Numbers of the halves that are held and how much of them, when all samples are what was fed.
  std::string Held() {
    const auto journal = Read();
    if (!journal) return "none";
    std::string text;
    Failure failure;
    const auto file = files.Open(kPath, OpenMode::Read, failure);
    for (const HeldHalf& held : journal->Held) {
      std::vector<std::int16_t> got(static_cast<std::size_t>(held.Samples)), fed(got);
      file->ReadAt(held.At, got.data(), 2 * held.Samples, failure);
      std::iota(fed.begin(), fed.end(), static_cast<std::int16_t>(held.Half * kHalf));
      text += std::to_string(held.Half) + ":" + std::to_string(held.Samples) + (got == fed ? " " : "! ");
    }
    return text;
  }

  // Samples from the beginning that stand in the file or in the journal.
  std::int64_t Kept() {
    const auto journal = Read();
    std::int64_t kept = (journal->Parts.at(0).WrittenTo() - format.DataAt()) / 2;
    for (const HeldHalf& held : journal->Held) {
      if (held.Half * kHalf <= kept) kept = std::max(kept, held.Half * kHalf + held.Samples);
    }
    return kept;
  }

  RecordingFormat format{12000, 1, 16, {}};
  VirtualClock clock;
  VirtualEventQueue queue{clock};
  VirtualFiles files;
  VirtualFileWorker worker{queue};
  std::vector<Error> faults;
  JournalWriter writer{files, worker, kPath};
};

TEST_F(JournalTest, HoldsTheLastHalvesAndTheLog) {
  writer.NoteLog({46349.75, 72050000, 44, 0});
  for (std::int64_t half = 0; half < 9; ++half) {
    FeedHalf(half);
    Work();
    if (half >= 3) writer.NoteWritten(half - 3);
  }
  writer.NoteLog({46349.76, 60700000, 44 + 9 * 2 * kHalf, 0});
  Feed(9, 0, 16);
  Feed(9, 32, 16);  // what is between got lost
  Work();
  EXPECT_EQ(Held(), "6:64 7:64 8:64 9:16 ");
  const auto journal = Read();
  EXPECT_EQ(journal->Head, (JournalHead{format, kHalf, 1}));
  const JournalPart& part = journal->Parts.at(0);
  ASSERT_EQ(part.Log.size(), 2U);
  EXPECT_EQ(part.Log[1], (LogRecord{46349.76, 60700000, 44 + 9 * 2 * kHalf, 0}));
  EXPECT_EQ(part.WrittenTo(), 44 + 6 * 2 * kHalf);
  writer.Remove();
  Work();
  EXPECT_FALSE(files.Exists(kPath));
  EXPECT_TRUE(faults.empty());
}

TEST_F(JournalTest, HeadAndTwoChannelsOfTheIFComeBack) {
  const JournalHead head{{48000, 2, 16, IFOrigin{2, false}}, 2 * kHalf, 3};
  writer.Begin(head);
  Work();
  EXPECT_EQ(Read()->Head, head);
  EXPECT_EQ(Read()->Parts.at(0).Number, 3);
}

TEST_F(JournalTest, LossesMoveWhatWasNotedBeforeAndFreeTheirSlots) {
  constexpr std::int64_t bytes = 2 * kHalf;
  for (std::int64_t half = 0; half < 5; ++half) FeedHalf(half);
  writer.NoteLog({1.0, 1000, 44, 0});
  writer.NoteLog({2.0, 2000, 44 + bytes + 10, 0});      // in half 1
  writer.NoteLog({3.0, 3000, 44 + 3 * bytes + 10, 0});  // in half 3
  Work();
  FeedHalf(5);
  writer.NoteLost(5, bytes);  // no room was left for it
  FeedHalf(6);
  writer.NoteWritten(0);
  writer.NoteLost(1, bytes);  // the disk didn't take it
  writer.NoteLog({4.0, 4000, 44 + 5 * bytes, 0});
  Work();
  EXPECT_EQ(Held(), "0:64 2:64 3:64 4:64 6:64 ");
  const auto journal = Read();
  const JournalPart& part = journal->Parts.at(0);
  EXPECT_EQ(part.Log.at(0).Start, 44);
  EXPECT_EQ(part.Log.at(1).Start, 44 + bytes);
  EXPECT_EQ(part.Log.at(2).Start, 44 + 2 * bytes + 10);
  EXPECT_EQ(part.Log.at(3).Start, 44 + 5 * bytes);
  EXPECT_EQ(part.PlaceOf(2), 44 + bytes);
  EXPECT_EQ(part.PlaceOf(6), 44 + 4 * bytes);
}

TEST_F(JournalTest, ANewPartCountsItsPositionsAnew) {
  constexpr std::int64_t bytes = 2 * kHalf;
  for (std::int64_t half = 0; half < 4; ++half) FeedHalf(half);
  writer.NoteLog({1.0, 1000, 44, 0});
  writer.NoteLost(1, bytes);
  writer.NoteLog({2.0, 2000, 44 + 3 * bytes - 8, 0});  // the last half is filled while the part turns
  writer.NotePart(2, 3);
  writer.NoteLog({3.0, 3000, 44 + bytes - 4, 0});
  writer.NotePart(3, 4);
  Work();
  auto journal = Read();
  ASSERT_EQ(journal->Parts.size(), 3U);
  EXPECT_EQ(journal->Parts[0].Log, (std::vector<LogRecord>{{1.0, 1000, 44, 0}}));
  EXPECT_EQ(journal->Parts[1].Log,
            (std::vector<LogRecord>{
                {1.0, 1000, 44, 0}, {2.0, 2000, 44 + bytes - 8, 0}, {3.0, 3000, 44 + bytes - 4, 0}}));
  EXPECT_EQ(journal->Parts[2].Log, (std::vector<LogRecord>{{3.0, 3000, 44, 0}}));
  EXPECT_EQ(journal->PartOf(2).Number, 1);
  EXPECT_EQ(journal->PartOf(3).Number, 2);
  EXPECT_EQ(journal->PartOf(5).PlaceOf(5), 44 + bytes);
}

TEST_F(JournalTest, AKillAtAnyStepCostsNoMoreThanTheBlockThatWasOnItsWay) {
  int steps = 0;
  for (bool done = false; !done; ++steps) {
    SCOPED_TRACE(steps);
    JournalWriter begun(files, worker, kPath);
    std::int64_t fed = 0;  // the last block went to the disk as a whole when the next one is on its way
    files.KillAfter(steps);
    try {
      begun.Begin({format, kHalf, 1});
      for (std::int64_t block = 0; block < 40; ++block) {
        std::vector<std::int16_t> samples(16);
        std::iota(samples.begin(), samples.end(), static_cast<std::int16_t>(16 * block));
        begun.NoteSamples(block / 4, static_cast<std::int32_t>(block % 4 * 16), samples.data(), 16);
        Work();
        fed = 16 * (block + 1);
        if (block % 4 == 3) begun.NoteWritten(block / 4);
      }
      Work();
      done = true;
    } catch (const Killed&) {
    }
    worker.Finish();
    files.Revive();
    if (fed == 0) continue;
    const std::string held = Held();
    EXPECT_EQ(held.find('!'), std::string::npos) << held;
    const std::int64_t kept = Kept();
    EXPECT_TRUE(kept == fed || kept == fed + 16) << fed << " fed, " << kept << " kept in " << held;
  }
  EXPECT_GT(steps, 90);
}

TEST_F(JournalTest, AFaultEndsItOnceAndLeavesNoTornOne) {
  FeedHalf(0);
  Work();
  files.Fail(FileOperation::Write, {28, "no space"});
  FeedHalf(1);
  writer.NoteWritten(0);
  Work();
  ASSERT_EQ(faults.size(), 1U);
  EXPECT_EQ(faults[0].Code, 28);
  EXPECT_FALSE(files.Exists(kPath));
  files.ClearFailures();
  FeedHalf(2);
  Work();
  EXPECT_FALSE(files.Exists(kPath));
  writer.Begin({format, kHalf, 1});
  FeedHalf(0);
  Work();
  EXPECT_EQ(Held(), "0:64 ");
}

TEST_F(JournalTest, ADiskThatStandsStillHoldsABoundedNumberOfSamples) {
  worker.Stall();
  for (std::int64_t half = 0; half < 100; ++half) FeedHalf(half);
  EXPECT_LE(worker.Waiting(), 6 * kHalf / 16 + 1);
  worker.Resume();
  Work();
  EXPECT_EQ(Held(), "0:64 1:64 2:64 3:64 4:64 5:64 ");
}

TEST(RecordingParts, AreNamedListedAndRemoved) {
  EXPECT_EQ(PartName("music/night.wav", 1), "music/night.wav");
  EXPECT_EQ(PartName("music/night.wav", 2), "music/night-2.wav");
  EXPECT_EQ(PartName("my.music/night", 10), "my.music/night-10");
  VirtualFiles files;
  for (const char* name : {"~QUORLWAV.TMP", "~QUORLWAV-2.TMP", "~QUORLWAV-10.TMP", "~QUORLWAV-1.TMP",
                           "~QUORLWAV-x.TMP", "~QUORLWAV.JNL", "night-2.wav"}) {
    files.Put(std::string("music/") + name, "");
  }
  EXPECT_EQ(TakenNames(files, "music/night.wav", 3), (std::vector<std::string>{"music/night-2.wav"}));
  const RecordingParts parts("music");
  EXPECT_EQ(parts.Existing(files),
            (std::vector<std::string>{"music/~QUORLWAV-1.TMP", "music/~QUORLWAV-2.TMP",
                                      "music/~QUORLWAV-10.TMP", "music/~QUORLWAV.TMP"}));
  EXPECT_EQ(parts.LastFinished(files), 10);
  files.KillAfter(1);
  EXPECT_THROW(parts.RemoveAll(files), Killed);
  files.Revive();
  EXPECT_FALSE(files.Exists(parts.Journal()));
  EXPECT_FALSE(parts.RemoveAll(files));
  EXPECT_EQ(files.List("music", ""), (std::vector<std::string>{"night-2.wav", "~QUORLWAV-x.TMP"}));
}

}  // namespace
}  // namespace quorl
