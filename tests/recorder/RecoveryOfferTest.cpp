#include "recorder/RecoveryOffer.h"

#include "platform/CalendarDays.h"
#include "recorder/DeckRig.h"

namespace quorl::test {
namespace {

// The next start of the program, in the folder that the last one left behind.
class NextStart {
 public:
  explicit NextStart(const WavFileMachine& machine) : Deck(machine, kFolder), Offer(Deck, machine, kFolder) {
    Deck.RecordFileName = kSaved;
    Offer.OnAdopted = [this] { Adopted = true; };
  }
  clsWavFile Deck;
  RecoveryOffer Offer;
  bool Adopted = false;
};

class RecoveryOfferTest : public DeckRig {
 protected:
  // A program that records and dies: nothing of it is called any more.
  void LeaveRecording(int blocks) {
    auto dying = std::make_unique<clsWavFile>(Machine(), kFolder);
    dying->TunedFrequency = [] { return 72050000; };
    dying->WriteNextBlockToDisk = [&dying] { dying->WriteToDisk(); };
    dying->OpenRecording();
    for (int i = 0; i < blocks; ++i) {
      std::array<std::int16_t, SamplesPerEvent> block;
      for (std::int16_t& sample : block) sample = Signal(Fed++);
      dying->AddSamples(block.data(), SamplesPerEvent);
      if (i == 20) dying->NewLogRecord(60000000);
      Queue.AdvanceBy(kBlock);
    }
  }
  WavFileMachine Machine() { return {Storage, Worker, Queue, Boxes, Clock}; }
  void Run() { Queue.AdvanceBy(std::chrono::seconds(1)); }
};

TEST_F(RecoveryOfferTest, AcceptedItIsSavedToTheLastTenthsOfASecond) {
  LeaveRecording(100);
  NextStart next(Machine());
  Boxes.MessageAnswers = {MessageAnswer::Yes};
  next.Offer.Look();
  Run();
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text.find("A recording of 4 seconds was left behind"), 0U);
  EXPECT_TRUE(next.Adopted && next.Deck.IsUnsaved());
  EXPECT_EQ(next.Deck.PlayerMode(), 4);
  EXPECT_EQ(next.Deck.Beginning().Freq, 72050000);
  EXPECT_EQ(DateText(next.Deck.Beginning().When), "2024-01-01 12:00:00");
  next.Deck.Save();
  const std::vector<std::int16_t> samples = SamplesOf(kSaved);
  EXPECT_GE(static_cast<std::int64_t>(samples.size()), Fed - 9600);
  for (std::size_t k = 0; k < samples.size(); ++k)
    ASSERT_EQ(samples[k], Signal(static_cast<std::int64_t>(k)));
  const Recording recording = Read(kSaved);
  ASSERT_EQ(recording.Log.size(), 2U);
  EXPECT_EQ(recording.Log[1].Start, 44 + 2 * 21 * 2048);
  EXPECT_EQ(recording.Log[1].End, recording.LogStart);
}

TEST_F(RecoveryOfferTest, RefusedItIsOfferedAgainUntilANewOneTakesItsPlace) {
  LeaveRecording(70);
  {
    NextStart next(Machine());
    next.Offer.Look();  // No
    Run();
    EXPECT_TRUE(next.Deck.IsLeftBehind());
    EXPECT_FALSE(next.Deck.IsUnsaved());
  }
  {
    NextStart next(Machine());
    next.Offer.Look();
    Run();
    EXPECT_EQ(Boxes.Messages.size(), 2U);
    EXPECT_EQ(next.Deck.OpenRecording(), 0);
    EXPECT_FALSE(next.Deck.IsLeftBehind());
    next.Deck.Discard();
  }
  NextStart next(Machine());
  next.Offer.Look();
  Run();
  EXPECT_EQ(Boxes.Messages.size(), 2U);
  EXPECT_FALSE(next.Deck.IsLeftBehind());
}

TEST_F(RecoveryOfferTest, WhatAnotherProgramRecordsIsLeftAlone) {
  Deck.OpenRecording();
  Feed(70);
  const std::string before = Content(Deck.TempFileName());
  NextStart next(Machine());
  Boxes.MessageAnswers = {MessageAnswer::Yes};
  next.Offer.Look();
  Run();
  EXPECT_TRUE(Boxes.Messages.empty());
  EXPECT_EQ(Content(Deck.TempFileName()), before);
  EXPECT_EQ(next.Deck.OpenRecording(), OpenFile::kLockedElsewhere);
}

}  // namespace
}  // namespace quorl::test
