#include "recorder/DeckRig.h"

#include <cerrno>

#include "config/SettingsStore.h"
#include "sound/AllocationCounter.h"

namespace quorl::test {
namespace {

constexpr int kHalf = 64;  // blocks

TEST_F(DeckRig, RecordsWholeHalvesToTheByte) {
  for (const std::int32_t decimator : {1, 2, 4, 8, 16}) {
    Fed = 0;
    Deck.SetDecimator(decimator);
    Boxes.MessageAnswers = {MessageAnswer::Yes};
    ASSERT_EQ(Deck.OpenRecording(), 0);
    EXPECT_TRUE(Deck.IsRecording() && !Deck.IsClosed() && Deck.PlayerMode() == 1);
    Feed(2 * kHalf + 30);
    Deck.StopPlayer();
    Deck.Save();
    EXPECT_EQ(Deck.StatusOfMedia(), MediaStatus::Saved);
    const Recording recording = Read(kSaved);
    EXPECT_EQ(recording.Format.Rate, 48000 / decimator);
    const std::vector<std::int16_t> samples = SamplesOf(kSaved);
    ASSERT_EQ(samples.size(), static_cast<std::size_t>(2 * 131072 / decimator));
    for (std::size_t k = 0; k < samples.size(); ++k) {
      ASSERT_EQ(samples[k], Signal(static_cast<std::int64_t>(k) * decimator)) << decimator << " " << k;
    }
    ASSERT_EQ(recording.Log.size(), 1U);
    EXPECT_EQ(recording.Log[0].Start, 44);
    EXPECT_EQ(recording.Log[0].End, recording.LogStart);
    EXPECT_TRUE(Storage.List(kFolder, ".TMP").empty());
    EXPECT_TRUE(Storage.List(kFolder, ".JNL").empty());
  }
}

TEST_F(DeckRig, NothingButAHeaderStandsBeforeTheFirstHalf) {
  Deck.OpenRecording();
  Feed(10);
  Deck.Save();
  EXPECT_EQ(Content(kSaved).size(), 44U + 5U + 124U);
  Boxes.MessageAnswers = {MessageAnswer::Yes};
  Deck.KeepTail = true;
  Deck.OpenRecording();
  Feed(10);
  Deck.Save();
  EXPECT_EQ(SamplesOf(kSaved).size(), 10U * 2048U);
}

TEST_F(DeckRig, LogsChangesOfATenthOfAKilohertz) {
  Deck.SetDecimator(4);
  Deck.OpenRecording();
  Feed(10);
  Deck.NewLogRecord(Tuned + 999);
  Feed(10);
  Deck.NewLogRecord(Tuned + 1000);
  Feed(kHalf);
  Deck.Save();
  const std::vector<LogRecord> log = Read(kSaved).Log;
  ASSERT_EQ(log.size(), 2U);
  EXPECT_EQ(log[1].Freq, Tuned + 1000);
  EXPECT_EQ(log[1].Start, 44 + 2 * 20 * 2048 / 4);
  EXPECT_EQ(log[0].End, log[1].Start);
}

TEST_F(DeckRig, PauseNeitherSkipsNorRepeatsAHalf) {
  Deck.OpenRecording();
  Feed(kHalf - 1);
  // The half becomes ready just before the pause, whose timer finds it paused.
  std::array<std::int16_t, SamplesPerEvent> block;
  for (std::int16_t& sample : block) sample = Signal(Fed++);
  Deck.AddSamples(block.data(), SamplesPerEvent);
  Deck.Pause();
  Feed(20);
  EXPECT_EQ(LastAdd, DeckCode::WrongPlayerMode);
  EXPECT_EQ(Results, std::vector<std::int16_t>{DeckCode::WriteWhilePaused});
  Deck.Pause();
  Feed(kHalf);
  Deck.Save();
  const std::vector<std::int16_t> samples = SamplesOf(kSaved);
  ASSERT_EQ(samples.size(), 2U * 131072U);
  for (std::size_t k = 0; k < samples.size(); ++k)
    ASSERT_EQ(samples[k], Signal(static_cast<std::int64_t>(k)));
}

TEST_F(DeckRig, CloseWritesAHalfThatIsReadyFirst) {
  Deck.OpenRecording();
  Feed(kHalf - 1);
  std::array<std::int16_t, SamplesPerEvent> block{};
  Deck.AddSamples(block.data(), SamplesPerEvent);
  Deck.Pause();
  Deck.Save();
  EXPECT_EQ(SamplesOf(kSaved).size(), 131072U);
}

TEST_F(DeckRig, ADiskThatStandsStillLosesNothingAndFourHalvesWait) {
  Deck.OpenRecording();
  Worker.Stall();
  Feed(4 * kHalf + 10);
  Worker.Resume();
  Feed(kHalf);
  Worker.Stall();
  Feed(7 * kHalf);  // more than can wait
  EXPECT_NE(std::find(Results.begin(), Results.end(), DeckCode::WriteIsRunning), Results.end());
  const std::int64_t there = Fed;
  Deck.NewLogRecord(Tuned + 50000);
  Worker.Resume();
  Feed(3 * kHalf);
  Deck.Save();
  const std::vector<std::int16_t> samples = SamplesOf(kSaved);
  const Recording recording = Read(kSaved);
  // Whole halves were lost in the middle; the log's position is that of the sample that was next.
  const std::int64_t lost = (15 * std::int64_t{131072} - static_cast<std::int64_t>(samples.size()));
  EXPECT_GT(lost, 0);
  EXPECT_EQ(lost % 131072, 0);
  const std::int64_t at = (recording.Log[1].Start - 44) / 2;
  EXPECT_EQ(at, there - lost);
  EXPECT_EQ(samples[static_cast<std::size_t>(at)], Signal(there));
  EXPECT_EQ(samples[static_cast<std::size_t>(5 * 131072)], Signal(5 * 131072));
}

TEST_F(DeckRig, AFailedWriteIsToldAndTheLogMovesUp) {
  Deck.OpenRecording();
  Feed(kHalf + 10);
  Deck.NewLogRecord(Tuned + 10000);  // within the half that will be lost
  Feed(kHalf - 20);
  Storage.Fail(FileOperation::Write, Error{ENOSPC, "no room"});
  Feed(20);
  Storage.ClearFailures();
  Deck.NewLogRecord(Tuned + 20000);  // behind it
  Feed(kHalf);
  EXPECT_EQ(Results.back(), ENOSPC);
  ASSERT_TRUE(Deck.LastFault());
  Deck.Save();
  const std::vector<std::int16_t> samples = SamplesOf(kSaved);
  ASSERT_EQ(samples.size(), 2U * 131072U);
  EXPECT_EQ(samples[131071], Signal(131071));
  EXPECT_EQ(samples[131072], Signal(2 * 131072));
  const std::vector<LogRecord> log = Read(kSaved).Log;
  EXPECT_EQ(log[1].Start, 44 + 2 * 131072);
  EXPECT_EQ(log[2].Start, 44 + 2 * (131072 + 10 * 2048));
}

TEST_F(DeckRig, NoLogFindsRoomOnAFullDiskUntilThereIsSome) {
  Deck.OpenRecording();
  Feed(kHalf);
  Storage.SetSpace(static_cast<std::int64_t>(Content(Deck.TempFileName()).size() +
                                             Content("/radio/~QUORLWAV.JNL").size()) +
                   60);
  Deck.Save();
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text,
            "Unable to close temporary file /radio/~QUORLWAV.TMP\n Please report this problem to QUORL");
  EXPECT_EQ(Content(Deck.TempFileName()).size(), 44U + 2U * 131072U);  // no torn trailer
  EXPECT_EQ(Deck.StatusOfMedia(), MediaStatus::Unsaved);
  Storage.SetSpace(1 << 30);
  Deck.Save();
  EXPECT_EQ(Read(kSaved).Log.size(), 1U);
}

TEST_F(DeckRig, ARefusedSaveLeavesTheRecordingForTheNext) {
  Storage.Put(kSaved, "old");
  Deck.OpenRecording();
  Feed(kHalf);
  Deck.Save();  // not to be overwritten
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text, std::string(kSaved) + "\n Exists - Do you want to overwrite it ?");
  EXPECT_EQ(Content(kSaved), "old");
  EXPECT_TRUE(Deck.IsUnsaved());
  Deck.RecordFileName.clear();
  Deck.Save();  // no name chosen
  ASSERT_EQ(Boxes.SaveFileRequests.size(), 1U);
  EXPECT_EQ(Boxes.SaveFileRequests[0].Title, "Select Filename to Save Recording");
  Boxes.SaveFileAnswers = {"/music/second"};
  Storage.Fail(FileOperation::Rename, Error{EXDEV, "another file system"});
  std::vector<double> progress;
  Deck.SaveProgress = [&](double share) { progress.push_back(share); };
  Deck.Save();  // the copy's own renaming fails too
  EXPECT_TRUE(Deck.IsUnsaved());
  EXPECT_FALSE(progress.empty());
  Storage.ClearFailures();
  Boxes.SaveFileAnswers = {"/music/second"};
  Deck.Save();
  EXPECT_EQ(SamplesOf("/music/second.wav").size(), 131072U);
  EXPECT_EQ(Deck.LastDirectory, "/music");
  EXPECT_FALSE(Deck.IsUnsaved());
}

TEST_F(DeckRig, ATargetThatTakesNoFileIsToldAndNothingIsLost) {
  Deck.RecordFileName = "/nowhere/x.wav";
  Deck.OpenRecording();
  Feed(kHalf);
  Deck.Save();
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text.find("Problem creating /nowhere/x.wav\nSystem Reported Error Code "), 0U);
  EXPECT_TRUE(Storage.Exists(Deck.TempFileName()));
}

TEST_F(DeckRig, LongRecordingsGoOnInTheNextFileWithoutLosingASample) {
  Deck.MostFileBytes = 44 + 2 * 131072 * 2 + 40000;  // two halves and a log
  std::vector<std::int32_t> parts;
  Deck.PartFinished = [&](std::int32_t part) { parts.push_back(part); };
  Deck.OpenRecording();
  Feed(kHalf / 2);
  Deck.NewLogRecord(Tuned + 10000);
  Feed(2 * kHalf);
  Deck.NewLogRecord(Tuned + 20000);  // in the second part, before the first one is finished
  Feed(2 * kHalf);
  Deck.NewLogRecord(Tuned + 30000);
  Feed(kHalf);
  Storage.Put("/music/night-2.wav", "old");
  Boxes.MessageAnswers = {MessageAnswer::Yes};
  Deck.Save();
  EXPECT_EQ(parts, (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(Boxes.Messages[0].Text, "/music/night-2.wav\n Exists - Do you want to overwrite it ?");
  std::vector<std::int16_t> all;
  for (const char* name : {kSaved, "/music/night-2.wav", "/music/night-3.wav"}) {
    const std::vector<std::int16_t> samples = SamplesOf(name);
    all.insert(all.end(), samples.begin(), samples.end());
    EXPECT_LE(static_cast<std::int64_t>(Content(name).size()), Deck.MostFileBytes);
  }
  ASSERT_EQ(all.size(), 5U * 131072U);
  for (std::size_t k = 0; k < all.size(); ++k) ASSERT_EQ(all[k], Signal(static_cast<std::int64_t>(k))) << k;
  const Recording first = Read(kSaved), second = Read("/music/night-2.wav"),
                  third = Read("/music/night-3.wav");
  ASSERT_EQ(first.Log.size(), 2U);
  EXPECT_EQ(first.Log[1].End, first.LogStart);
  ASSERT_EQ(second.Log.size(), 2U);
  EXPECT_EQ(second.Log[0].Freq, Tuned + 10000);
  EXPECT_EQ(second.Log[0].Start, 44);
  EXPECT_EQ(second.Log[1].Start, 44 + 2 * 131072 / 2);
  ASSERT_EQ(third.Log.size(), 2U);
  EXPECT_EQ(third.Log[0].Freq, Tuned + 20000);
  EXPECT_EQ(third.Log[0].Start, 44);
  EXPECT_EQ(third.Log[1].Start, 44 + 2 * 131072 / 2);
  EXPECT_TRUE(Storage.List(kFolder, ".TMP").empty());
}

TEST_F(DeckRig, ASecondProgramMayNotRecordInTheFolder) {
  clsWavFile other{{Storage, Worker, Queue, Boxes, Clock}, kFolder};
  ASSERT_EQ(other.OpenRecording(), 0);
  EXPECT_EQ(Deck.OpenRecording(), OpenFile::kLockedElsewhere);
  EXPECT_FALSE(Deck.IsRecording());
  EXPECT_FALSE(Deck.Adopt());
  other.Discard();
  EXPECT_TRUE(Storage.List(kFolder, ".TMP").empty());
  EXPECT_EQ(Deck.OpenRecording(), 0);
}

TEST_F(DeckRig, AFailedStartLeavesTheDeckAsItWas) {
  Storage.Fail(FileOperation::Open, Error{EACCES, "no access"});
  EXPECT_EQ(Deck.OpenRecording(), EACCES);
  EXPECT_FALSE(Deck.IsRecording());
  EXPECT_EQ(Deck.AddSamples(nullptr, 0), DeckCode::AddWithoutRecording);
  EXPECT_EQ(Deck.WriteToDisk(), DeckCode::WriteWithoutRecording);
  EXPECT_EQ(Deck.CloseRecording(), DeckCode::NothingToClose);
  Storage.ClearFailures();
  EXPECT_EQ(Deck.OpenRecording(), 0);
  EXPECT_EQ(Deck.WriteToDisk(), DeckCode::NoFullHalf);
}

TEST_F(DeckRig, AtTheProgramsEndAnUnsavedRecordingStaysWhole) {
  Deck.OpenRecording();
  Feed(kHalf);
  Deck.Finish();
  EXPECT_EQ(Read(Deck.TempFileName()).Log.size(), 1U);
  EXPECT_EQ(SamplesOf(Deck.TempFileName()).size(), 131072U);
}

TEST_F(DeckRig, IFRecordingsHoldBothChannelsAndSayWhereTheyComeFrom) {
  Deck.RecordIF = true;
  Deck.SetDecimator(4);
  Deck.Origin = [] { return IFOrigin{SDRModel::IQXtalRX, true}; };
  Deck.OpenRecording();
  ASSERT_TRUE(Deck.IsIF());
  std::array<std::int16_t, SamplesPerEvent> left, right;
  for (int block = 0; block < kHalf / 2 + 3; ++block) {
    for (std::size_t k = 0; k < left.size(); ++k) {
      left[k] = Signal(Fed);
      right[k] = Signal(-Fed++);
    }
    Deck.AddIF(left.data(), right.data(), SamplesPerEvent);
    if (block == 3) Deck.NewLogRecord(Tuned + 5000);
    Queue.AdvanceBy(kBlock);
  }
  Deck.Save();
  const Recording recording = Read(kSaved);
  EXPECT_EQ(recording.Format, (RecordingFormat{48000, 2, 16, IFOrigin{SDRModel::IQXtalRX, true}}));
  EXPECT_EQ(recording.Frames(), 131072 / 2);
  EXPECT_EQ(recording.Log[1].Start, 80 + 4 * 4 * 2048);

  Deck.TakeName(kSaved);
  ASSERT_EQ(Deck.OpenFile(), 0);
  Queue.AdvanceBy(std::chrono::milliseconds(50));
  Deck.Play();
  for (std::int64_t n = 0; n < 131072 / 2; n += SamplesPerEvent) {
    const std::int16_t* q = Deck.GetNextIF(left.data(), SamplesPerEvent);
    for (std::int64_t k = 0; k < SamplesPerEvent; ++k) {
      ASSERT_EQ(left[static_cast<std::size_t>(k)], Signal(n + k));
      ASSERT_EQ(q[k], Signal(-(n + k)));
    }
    Queue.AdvanceBy(kBlock);
  }
  EXPECT_EQ(Ends, 1);
}

TEST_F(DeckRig, TheBlockPathAllocatesNothing) {
  Deck.OpenRecording();
  std::array<std::int16_t, SamplesPerEvent> block{};
  std::int64_t taken = 0;
  const auto counted = [&](auto call) {
    const std::int64_t before = AllocationsOfThisThread();
    call();
    taken += AllocationsOfThisThread() - before;
  };
  Deck.WriteNextBlockToDisk = [] {};
  Deck.ReadNextBlockFromDisk = [] {};
  for (int i = 0; i < 2 * kHalf; ++i) counted([&] { Deck.AddSamples(block.data(), SamplesPerEvent); });
  Deck.Discard();
  Load(200000);
  Deck.Play();
  for (int i = 0; i < 60; ++i) {
    if (i == 20) Deck.SeekTo(60001);
    counted([&] { Deck.GetNextSamples(block.data(), SamplesPerEvent); });
    Queue.AdvanceBy(kBlock);
    Deck.ReadFromDisk();
  }
  EXPECT_EQ(taken, 0);
}

TEST_F(DeckRig, TheCallsWithoutAButtonKeepTheirWord) {
  EXPECT_EQ(Deck.ClosePlayback(), DeckCode::NothingToClose);
  Deck.StopRecording();
  EXPECT_EQ(Deck.PlayerMode(), 4);
  Deck.OpenRecording();
  Feed(kHalf);
  Deck.Pause();
  Deck.StopRecording();
  EXPECT_FALSE(Deck.IsRecording() || Deck.IsPaused());
  Feed(1);
  EXPECT_EQ(LastAdd, DeckCode::AddWithoutRecording);
  Deck.Save();
  EXPECT_EQ(SamplesOf(kSaved).size(), 131072U);

  Deck.TakeName(kSaved);
  ASSERT_EQ(Deck.OpenPlayback(), 0);
  EXPECT_TRUE(Deck.IsPlaying());
  EXPECT_FALSE(Deck.IsClosed());
  EXPECT_EQ(Deck.PlayerMode(), 0);
  Queue.AdvanceBy(std::chrono::milliseconds(50));
  Deck.Play();
  EXPECT_EQ(Hear(1)[5], Signal(5));
  Deck.StopPlayBack();
  EXPECT_FALSE(Deck.IsPlaying());
  EXPECT_EQ(Deck.OpenPlayback(), 0);
  EXPECT_EQ(Deck.ClosePlayback(), 0);
  EXPECT_TRUE(Deck.IsClosed());

  std::string stamp(100, 'x');
  Deck.UnPackLogRecord(stamp);
  EXPECT_EQ(stamp.size(), 100U);
  std::string text;
  for (std::size_t i = 0; stamp[i + 1] == '\0'; i += 2) text += stamp[i];
  EXPECT_EQ(text,
            "QUORL\x04"
            "D=2024-01-01\x04"
            "T=12:0:2\x04");
}

TEST_F(DeckRig, SettingsThatCantBeAreToldAndLeftOut) {
  std::vector<std::string> lines;
  Deck.Report = [&](const std::string& line) { lines.push_back(line); };
  SettingsTable table("WavFile");
  Deck.AddSettings(table);
  SettingsStore store(Storage, "/radio/settings.ini");
  for (const auto& [key, value] : {std::pair{"RecBlockSizeInSamples", "5000"},
                                   {"Decimator", "3"},
                                   {"SamplingRate", "44100"},
                                   {"NumChannels", "2"},
                                   {"BitsPerSample", "24"},
                                   {"LastDirectory", "/music"}}) {
    store.SaveSetting("WavFile", key, value);
  }
  table.Read(store);
  EXPECT_EQ(lines.size(), 5U);
  EXPECT_EQ(Deck.RecBlockSizeInSamples, 131072);
  EXPECT_EQ(Deck.Decimator(), 1);
  EXPECT_EQ(Deck.BitsPerSample, 16);
  EXPECT_EQ(Deck.LastDirectory, "/music");
  Deck.SetDecimator(8);
  table.Write(store);
  EXPECT_EQ(store.GetSetting("WavFile", "WavSamplingRate", ""), "6000");
  EXPECT_EQ(store.GetSetting("WavFile", "RecordFileName", ""), kSaved);
}

}  // namespace
}  // namespace quorl::test
