// Recordings that were killed at any step, and what is found and made of them.
#include <gtest/gtest.h>

#include <map>

#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/RecordingWriter.h"
#include "recorder/journal/Recovery.h"

namespace quorl {
namespace {

using std::chrono::milliseconds;

constexpr std::int32_t kHalfSamples = 32, kFreq = 72050000;

// A sample tells its place within the recording.
std::int16_t Sample(std::int64_t index) {
  return static_cast<std::int16_t>(index * 40503 + 77);
}

std::string Content(const VirtualFiles& files, const std::string& path) {
  Failure failure;
  return files.Read(path, failure).value_or("");
}

RecordingRead ReadBack(const VirtualFiles& files, const std::string& path) {
  Failure failure;
  const auto file = files.Open(path, OpenMode::Read, failure);
  return file ? ReadRecording(*file) : RecordingRead{{}, failure};
}

// What a deck does with its writer, half by half.
class Session {
 public:
  explicit Session(const RecordingFormat& recorded, std::int32_t halfSamples = kHalfSamples)
      : format(recorded), half(halfSamples), block(halfSamples / 4) {
    files.Put("music/other.wav", "");
  }

  void Work() { queue.AdvanceBy(milliseconds(200)); }

  void Open(int halvesOfAPart = 3) {
    writer = std::make_unique<RecordingWriter>(files, worker, queue, log, parts);
    writer->Open(format, {half, std::int64_t{1} << 40, halvesOfAPart * half / format.Channels});
    Tune(kFreq);
    Work();
  }

  void Tune(std::int32_t freq) {
    tuned[freq] = total;
    writer->NoteTuning(freq, static_cast<double>(tuned.size()), total);
  }

  void Give(const std::vector<std::int16_t>& samples) {
    const auto filled = static_cast<std::int32_t>(filling.size());
    writer->Follow(total / half, filled, samples.data(), static_cast<std::int32_t>(samples.size()));
    filling.insert(filling.end(), samples.begin(), samples.end());
    total += std::ssize(samples);
    if (total % half == 0) writer->Write(total / half - 1, std::exchange(filling, {}));
  }

  void GiveBlock() {
    std::vector<std::int16_t> samples(static_cast<std::size_t>(block));
    for (std::int16_t& sample : samples) sample = Sample(given++);
    Give(samples);
  }

  void Feed(int blocks) {
    for (int i = 0; i < blocks; ++i) {
      GiveBlock();
      Work();
      fed = given;
    }
  }

  // What a program does until it is killed: two parts, the tuning changes before, while and after the first
  // one is finished, and the end.
  bool Record() {
    try {
      Open();
      Feed(10);
      Tune(kFreq + 5000);
      Feed(5);
      worker.Stall();
      GiveBlock();
      Tune(kFreq + 7000);
      worker.Resume();
      Work();
      fed = given;
      Feed(1);
      Tune(kFreq + 9000);
      Feed(7);
      writer->Finish();
      Work();
      return true;
    } catch (const Killed&) {
      return false;
    }
  }

  void Dies() {
    worker.Finish();
    writer = nullptr;
    files.Revive();
  }

  RecordingFormat format;
  std::int32_t half, block;
  VirtualClock clock;
  VirtualEventQueue queue{clock};
  VirtualFiles files;
  VirtualFileWorker worker{queue};
  RecordingParts parts{"music"};
  std::vector<LogRecord> log;
  std::unique_ptr<RecordingWriter> writer;
  std::vector<std::int16_t> filling;
  std::map<std::int32_t, std::int64_t> tuned;  // from which sample on
  // Samples handed over, lost ones among them; those that tell their place; those that had time to reach the
  // disk.
  std::int64_t total = 0, given = 0, fed = 0;
};

// The log of a part that begins with sample `first`, where none was lost.
void ExpectLog(const Session& session, const Recording& recording, std::int64_t first) {
  const std::int64_t begin = session.format.DataAt(), end = begin + recording.DataBytes;
  ASSERT_FALSE(recording.Log.empty());
  EXPECT_EQ(recording.Log.front().Start, begin);
  EXPECT_EQ(recording.Log.back().End, end + 1);
  EXPECT_EQ(recording.LogStart, end + 1);
  EXPECT_EQ(recording.FileBytes, end + 5 + kLogRecordBytes * std::ssize(recording.Log));
  for (const LogRecord& record : recording.Log) {
    const std::int64_t start = begin + 2 * std::max<std::int64_t>(session.tuned.at(record.Freq) - first, 0);
    EXPECT_EQ(record.Start, std::min(start, end)) << record.Freq;
  }
  // Whatever was tuned within it is there.
  for (const auto& [freq, sample] : session.tuned) {
    const bool within = sample >= first && sample < first + recording.DataBytes / 2;
    const auto is = [freq = freq](const LogRecord& record) { return record.Freq == freq; };
    EXPECT_TRUE(!within || std::any_of(recording.Log.begin(), recording.Log.end(), is)) << freq;
  }
}

// Every file is a sound recording, and all samples are there in their order.
void ExpectWhole(const Session& session, const FoundRecording& found, std::int64_t least) {
  EXPECT_FALSE(found.Fault);
  EXPECT_FALSE(session.files.Exists(session.parts.Journal()));
  std::int64_t index = 0;
  for (const std::string& path : found.Files) {
    const RecordingRead read = ReadBack(session.files, path);
    ASSERT_TRUE(read.Own) << path;
    EXPECT_EQ(read.Own->Format, session.format);
    const std::string content = Content(session.files, path);
    const auto data = static_cast<std::size_t>(session.format.DataAt());
    for (std::size_t at = data; at + 1 < data + static_cast<std::size_t>(read.Own->DataBytes); at += 2) {
      const auto low = static_cast<unsigned char>(content[at]),
                 high = static_cast<unsigned char>(content[at + 1]);
      ASSERT_EQ(static_cast<std::int16_t>(low | high << 8), Sample(index++)) << path << " at " << at;
    }
    ExpectLog(session, *read.Own, index - read.Own->DataBytes / 2);
  }
  EXPECT_EQ(found.Frames * session.format.Channels, index);
  EXPECT_GE(index, least);
}

std::map<std::string, std::string> AllFiles(const VirtualFiles& files) {
  std::map<std::string, std::string> contents;
  for (const std::string& name : files.List("music", "")) contents[name] = Content(files, "music/" + name);
  return contents;
}

const std::vector<RecordingFormat> kFormats{
    {12000, 1, 16, {}}, {48000, 1, 8, {}}, {48000, 2, 16, IFOrigin{2, true}}};

TEST(Recovery, ARecordingKilledAtAnyStepIsFoundAndMendedToTheLastBlock) {
  for (const RecordingFormat& format : kFormats) {
    bool done = false;
    int offered = 0;
    for (int steps = 0; !done; ++steps) {
      SCOPED_TRACE(std::to_string(format.Bits) + " bits, step " + std::to_string(steps));
      Session session(format);
      session.files.KillAfter(steps);
      done = session.Record();
      session.Dies();
      const FoundRecording found = FindRecording(session.files, session.parts);
      const FoundRecording mended = MendRecording(session.files, session.parts);
      EXPECT_EQ(found.Files, mended.Files);
      EXPECT_EQ(found.Frames, mended.Frames);
      EXPECT_EQ(found.NeedsMending, !done && !found.Files.empty());
      if (session.fed == 0 && mended.Files.empty()) continue;
      ExpectWhole(session, mended, session.fed);
      EXPECT_FALSE(mended.LogLost);
      EXPECT_FALSE(FindRecording(session.files, session.parts).NeedsMending);
      ++offered;
    }
    EXPECT_GT(offered, 60);
  }
}

TEST(Recovery, IsBegunAgainWhereItWasKilledItself) {
  for (int steps = 20; steps < 90; ++steps) {
    Session plain(kFormats[0]);
    plain.files.KillAfter(steps);
    plain.Record();
    plain.Dies();
    MendRecording(plain.files, plain.parts);
    const auto expected = AllFiles(plain.files);
    bool done = false;
    for (int kill = 0; !done; ++kill) {
      SCOPED_TRACE(std::to_string(steps) + ", and in mending " + std::to_string(kill));
      Session session(kFormats[0]);
      session.files.KillAfter(steps);
      session.Record();
      session.Dies();
      session.files.KillAfter(kill);
      try {
        done = !MendRecording(session.files, session.parts).Fault;
      } catch (const Killed&) {
      }
      session.files.Revive();
      MendRecording(session.files, session.parts);
      ASSERT_EQ(AllFiles(session.files), expected);
    }
  }
}

TEST(Recovery, TheLogFitsTheSamplesAlsoBehindALostHalf) {
  Session session(kFormats[0], 1024);
  session.Open();
  session.Feed(6);
  session.Tune(kFreq + 5000);  // in the half that gets lost
  session.Feed(1);
  session.Give(std::vector<std::int16_t>(256, 0));
  session.queue.AdvanceBy(milliseconds(1));  // the journal takes the block; next is the half's turn
  session.files.WriteShort(2000);
  session.Work();  // what it has put down is longer than the log
  session.Tune(kFreq + 9000);
  session.given = 1024;
  session.Feed(2);
  session.Dies();
  const FoundRecording mended = MendRecording(session.files, session.parts);
  EXPECT_EQ(mended.Frames, 1024 + 2 * 256);
  const std::int64_t at = 44 + 2 * 1024, end = at + 4 * 256;
  EXPECT_EQ(ReadBack(session.files, session.parts.Current()).Own->Log,
            (std::vector<LogRecord>{
                {1.0, kFreq, 44, at}, {2.0, kFreq + 5000, at, at}, {3.0, kFreq + 9000, at, end + 1}}));
  const std::string content = Content(session.files, session.parts.Current());
  for (std::int64_t i = 0; i < mended.Frames; ++i) {
    const auto low = static_cast<std::size_t>(44 + 2 * i);
    ASSERT_EQ(content[low], static_cast<char>(Sample(i) & 0xFF)) << i;
  }
}

TEST(Recovery, AFinishedPartStaysWholeWhereTheNextFileIsNotMadeAtOnce) {
  Session session(kFormats[0]);
  session.Open();
  session.Feed(15);
  session.files.Fail(FileOperation::Open, {24, "too many open files"});
  session.Give(std::vector<std::int16_t>(static_cast<std::size_t>(session.block), 0));
  session.Work();  // the part has got its number, and this half is lost
  EXPECT_EQ(session.writer->TakeFault()->Code, 24);
  session.files.ClearFailures();
  session.given = 3 * kHalfSamples;
  session.Feed(4);
  EXPECT_FALSE(session.writer->Finish());
  session.Work();
  session.Dies();
  const FoundRecording found = FindRecording(session.files, session.parts);
  EXPECT_EQ(found.Files.size(), 2U);
  EXPECT_FALSE(found.NeedsMending);
  ExpectWhole(session, found, 4 * kHalfSamples);
}

TEST(Recovery, WithoutASoundJournalTheLengthTellsTheEndAndThatIsTold) {
  for (const bool torn : {false, true}) {
    SCOPED_TRACE(torn ? "a torn journal" : "no journal");
    Session session(kFormats[0]);
    session.Open();
    session.Feed(11);
    session.Dies();
    std::string journal = Content(session.files, session.parts.Journal());
    journal[20] ^= 1;
    if (torn) session.files.Put(session.parts.Journal(), journal);
    if (!torn) session.files.Remove(session.parts.Journal());
    session.files.Put(session.parts.Current(), Content(session.files, session.parts.Current()) + "x");
    const FoundRecording found = FindRecording(session.files, session.parts);
    EXPECT_TRUE(found.NeedsMending && found.LogLost);
    EXPECT_EQ(found.Frames, 2 * kHalfSamples);
    EXPECT_FALSE(MendRecording(session.files, session.parts).Fault);
    const RecordingRead read = ReadBack(session.files, session.parts.Current());
    EXPECT_EQ(read.Own->FileBytes, 44 + 4 * kHalfSamples);
    EXPECT_EQ(read.Own->DataBytes, 4 * kHalfSamples);
    EXPECT_EQ(read.Own->LogStart, 0);
    const FoundRecording again = FindRecording(session.files, session.parts);
    EXPECT_FALSE(again.NeedsMending || again.LogLost);
    EXPECT_EQ(again.Frames, 2 * kHalfSamples);
  }
}

TEST(Recovery, WithoutAJournalAMendingThatWasKilledIsBegunAgainToo) {
  for (const RecordingFormat& format : kFormats) {
    std::map<std::string, std::string> expected;
    bool done = false;
    for (int kill = -1; !done; ++kill) {
      SCOPED_TRACE(std::to_string(format.Bits) + " bits, killed in mending " + std::to_string(kill));
      Session session(format);
      session.Open();
      session.Feed(11);
      session.Dies();
      session.files.Remove(session.parts.Journal());
      if (kill >= 0) session.files.KillAfter(kill);
      try {
        done = !MendRecording(session.files, session.parts).Fault && kill >= 0;
      } catch (const Killed&) {
      }
      session.files.Revive();
      MendRecording(session.files, session.parts);
      if (kill < 0) expected = AllFiles(session.files);
      ASSERT_EQ(AllFiles(session.files), expected);
    }
  }
}

TEST(Recovery, ADamagedEventDoesNotCutAFileThatGoesOnBehindIt) {
  Session session(kFormats[0]);
  session.Open(100);
  session.Feed(4 * 20);
  session.Dies();
  std::string journal = Content(session.files, session.parts.Journal());
  journal[static_cast<std::size_t>(JournalLayout{2 * kHalfSamples}.EventsAt()) + 30] ^= 1;
  // Slots too: nothing is known but the first record.
  for (int slot = 0; slot < JournalLayout::kSlots; ++slot) {
    journal[static_cast<std::size_t>(JournalLayout{2 * kHalfSamples}.SamplesAt(slot))] ^= 1;
  }
  session.files.Put(session.parts.Journal(), journal);
  const FoundRecording mended = MendRecording(session.files, session.parts);
  ExpectWhole(session, mended, session.fed);
}

TEST(Recovery, SamplesThatAPowerCutTookBecomeSilenceAndTheLogStaysRight) {
  Session session(kFormats[0]);
  session.Open(100);
  session.Feed(4 * 8);
  session.Tune(kFreq + 5000);
  session.Feed(2);
  session.Dies();
  const std::string whole = Content(session.files, session.parts.Current());
  session.files.Put(session.parts.Current(), whole.substr(0, 44 + 3));
  EXPECT_FALSE(MendRecording(session.files, session.parts).Fault);
  const RecordingRead read = ReadBack(session.files, session.parts.Current());
  EXPECT_EQ(read.Own->DataBytes, 2 * session.fed);
  EXPECT_EQ(read.Own->Log.at(1).Start, 44 + 2 * 8 * kHalfSamples);
  EXPECT_EQ(Content(session.files, session.parts.Current()).substr(48, 10), std::string(10, '\0'));
}

TEST(Recovery, NothingIsOfferedThatHoldsNoSamples) {
  VirtualFiles files;
  const RecordingParts parts("music");
  EXPECT_TRUE(FindRecording(files, parts).Files.empty());
  files.Put(parts.Current(), "not a sound file, however many letters it may hold");
  files.Put(parts.Journal(), "nor a journal");
  EXPECT_TRUE(FindRecording(files, parts).Files.empty());
  Session session(kFormats[0]);
  session.Open();
  session.Dies();
  EXPECT_TRUE(FindRecording(session.files, session.parts).Files.empty());
  files.Fail(FileOperation::Read, {5, "~QUORLWAV.TMP: Input/output error"});
  EXPECT_EQ(FindRecording(files, parts).Fault->Code, 5);
}

TEST(Recovery, OnAFullDiskWaitsForRoomBesideTheQueue) {
  Session session(kFormats[0]);
  session.Open();
  session.Feed(7);
  session.Dies();
  Recovery recovery(session.files, session.worker, session.parts);
  std::vector<FoundRecording> told;
  const auto note = [&told](const FoundRecording& found) { told.push_back(found); };
  session.files.SetSpace(0);
  recovery.Mend(note);
  EXPECT_TRUE(told.empty());
  session.Work();
  session.files.SetSpace(1 << 20);
  recovery.Find(note);
  recovery.Mend(note);
  session.Work();
  ASSERT_EQ(told.size(), 3U);
  EXPECT_EQ(told[0].Fault->Code, 28);
  EXPECT_TRUE(told[0].NeedsMending && told[1].NeedsMending);
  ExpectWhole(session, told[2], session.fed);
}

}  // namespace
}  // namespace quorl
