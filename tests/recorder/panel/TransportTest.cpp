// What the ten buttons do, in every state of the deck.
#include "recorder/panel/RecorderRig.h"

namespace quorl::test {
namespace {

class Transport : public RecorderRig {};

TEST_F(Transport, ARecordingIsMadeSavedLoadedAndPlayed) {
  EXPECT_EQ(Text("lblRecordSize"), "000,000,000");
  Power = true;
  Button(WavCtl::Record);
  EXPECT_EQ(Down(), "0");
  for (int i = 0; i < WavCtl::Count; ++i) EXPECT_EQ(Shown(i), i < 4) << i;
  EXPECT_FALSE(At("txtRecordFileName").Enabled() || At("cmdBrowseWavFile").Enabled());
  EXPECT_TRUE(At("optRecordSampleRate(2)").Faded() && At("frRecordSampling").Faded());
  Hear(4.139);
  EXPECT_EQ(Text("lblRecordTime"), "00:00:04");
  EXPECT_EQ(Text("lblRecordSize"), "388") << "44 bytes and 97 blocks, truncated";
  EXPECT_EQ(State(), "Recording");
  Button(WavCtl::Stop);
  EXPECT_EQ(Presses, "-");
  EXPECT_EQ(Down(), "");
  EXPECT_TRUE(Shown(9));
  EXPECT_EQ(State(), "Recorded, not saved: Save or Close");
  Button(WavCtl::Record);
  EXPECT_EQ(Down(), "") << "waits for Save or Close";
  Boxes.SaveFileAnswers.push_back("/music/night");
  Button(WavCtl::Save);
  EXPECT_EQ(State(), "Saved as night.wav");
  EXPECT_EQ(Text("txtRecordFileName"), "night.wav");
  EXPECT_TRUE(At("txtRecordFileName").Enabled());
  EXPECT_EQ(Boxes.SaveFileRequests.size(), 1U);

  Button(WavCtl::Play);
  EXPECT_EQ(Down(), "1") << "what has just been saved";
  EXPECT_EQ(Presses, "-+");
  for (int i = 0; i < WavCtl::Count; ++i) EXPECT_EQ(Shown(i), i < 7) << i;
  Hear(1.0);
  EXPECT_EQ(State(), "Playing night.wav");
  EXPECT_EQ(Text("lblRecordTime"), "00:00:00");
  EXPECT_EQ(Text("lblRecorderLeft"), "-00:00:03");
  Hear(4.0);
  EXPECT_EQ(Presses, "-+-") << "the end presses Stop";
  EXPECT_EQ(Down(), "");
  EXPECT_TRUE(Shown(7));
  Button(WavCtl::Close);
  EXPECT_EQ(State(), "Ready");
  EXPECT_TRUE(Deck.RecordFileName.empty());
  EXPECT_EQ(Text("txtRecordFileName"), "night.wav");
  EXPECT_TRUE(Memories && !At("picRecorderTrackList").Visible());
}

TEST_F(Transport, PauseHoldsAndRecordOrPauseGoOn) {
  Button(WavCtl::Pause);
  EXPECT_EQ(Down(), "") << "there is nothing to be held";
  Power = true;
  Button(WavCtl::Record);
  Hear(1.0);
  Button(WavCtl::Pause);
  EXPECT_EQ(Down(), "02");
  EXPECT_EQ(At("cmdWavCtls(2)").BackColour(), 255U);
  const std::int64_t queued = Deck.SamplesQueued;
  Hear(1.0);
  EXPECT_EQ(Deck.SamplesQueued, queued);
  EXPECT_EQ(State(), "Recording paused");
  Button(WavCtl::Record);
  EXPECT_EQ(Down(), "0");
  EXPECT_EQ(At("cmdWavCtls(2)").BackColour(), kNoColour);
  Hear(1.0);
  EXPECT_GT(Deck.SamplesQueued, queued);
  Button(WavCtl::Pause);
  Button(WavCtl::Stop);
  for (const int button : {WavCtl::Record, WavCtl::Pause}) {
    Button(button);
    EXPECT_EQ(Down(), "") << "stopped, nothing is held any more";
    EXPECT_EQ(Deck.PlayerMode(), DeckMode::Stopped);
  }
}

TEST_F(Transport, PlayAsksForTheRecordingFirst) {
  Power = true;
  Button(WavCtl::Record);
  Hear(1.0);
  Boxes.MessageAnswers = {MessageAnswer::No};
  Button(WavCtl::Play);
  EXPECT_EQ(Boxes.Messages.back().Text,
            "Recording must be saved before playback\nDo you want to save the Recording ?");
  EXPECT_EQ(Deck.PlayerMode(), PlayerModes::Recording) << "it runs on";
  Hear(1.0);
  Deck.RecordFileName = "/music/known.wav";
  Boxes.MessageAnswers = {MessageAnswer::Yes};
  Button(WavCtl::Play);
  EXPECT_EQ(Boxes.SaveFileRequests.size(), 1U) << "asks for a name, known or not";
  EXPECT_TRUE(Deck.IsUnsaved());
  EXPECT_EQ(Down(), "");
  EXPECT_EQ(Deck.RecordFileName, "/music/known.wav");
  EXPECT_FALSE(At("frmRecordFileError").Visible()) << "that ends it: there is nothing to be opened";
  Boxes.MessageAnswers = {MessageAnswer::Yes};
  Boxes.SaveFileAnswers = {kTour};
  Button(WavCtl::Play);
  EXPECT_EQ(Down(), "1");
  EXPECT_EQ(Deck.FileName, kTour);
  EXPECT_TRUE(At("picRecorderTrackList").Visible());
}

// By their answer: what stays as it is, and what goes.
TEST_F(Transport, WhatIsNotSavedGoesOnlyAfterAQuestion) {
  MakeTour();
  for (const int button : {WavCtl::Load, WavCtl::Close, WavCtl::Record}) {
    SCOPED_TRACE(button);
    Button(WavCtl::Close);
    Record({7205});
    Button(WavCtl::Save);  // refused: from now on Record asks, too
    ASSERT_FALSE(Deck.IsRecording());
    Boxes.MessageAnswers = {MessageAnswer::Cancel};
    Boxes.OpenFileAnswers = {kTour};
    Boxes.Messages.clear();
    Button(button);
    ASSERT_EQ(Boxes.Messages.size(), 1U);
    EXPECT_EQ(Boxes.Messages.back().Text, "Do you want to save the Recording ?");
    EXPECT_EQ(Boxes.Messages.back().Buttons, MessageButtons::YesNoCancel);
    EXPECT_TRUE(Deck.IsUnsaved());
    Boxes.MessageAnswers = {MessageAnswer::Yes};
    Button(button);
    EXPECT_TRUE(Deck.IsUnsaved()) << "no name was given";
    EXPECT_EQ(Boxes.Messages.size(), 2U);
    EXPECT_FALSE(Deck.IsRecording());
    Boxes.MessageAnswers = {MessageAnswer::No};
    Button(button);
    EXPECT_EQ(Storage.Exists("/radio/~QUORLWAV.TMP"), button == WavCtl::Record);
    EXPECT_EQ(Deck.HasFile(), button == WavCtl::Load);
    EXPECT_EQ(Deck.IsRecording(), button == WavCtl::Record);
    Boxes.OpenFileAnswers.clear();
  }
}

TEST_F(Transport, ALoadThatIsCancelledOrFailsChangesNothing) {
  MakeTour();
  const auto expectTour = [this] {
    EXPECT_EQ(State(), "Loaded tour.wav");
    EXPECT_EQ(Text("txtRecordFileName"), "tour.wav");
    EXPECT_EQ(Panel->Tracks.lstRecordingLogs.Items().size(), 3U);
    EXPECT_TRUE(Deck.HasFile());
  };
  Button(WavCtl::Load);
  expectTour();
  Storage.Put("/music/noise.wav", "not a sound at all");
  Load("/music/noise.wav");
  EXPECT_TRUE(At("frmRecordFileError").Visible());
  EXPECT_NE(Text("txtMessage").find("/music/noise.wav"), std::string::npos) << Text("txtMessage");
  Click("OKButton");
  EXPECT_FALSE(At("frmRecordFileError").Visible());
  Button(WavCtl::Play);
  EXPECT_EQ(Down(), "1");
  Button(WavCtl::Stop);

  Button(WavCtl::Close);
  Record({7205});
  Boxes.MessageAnswers = {MessageAnswer::No};
  Button(WavCtl::Load);
  EXPECT_TRUE(Deck.IsUnsaved()) << "the file was not chosen after all";
}

TEST_F(Transport, WhatCanNotBeRecordedIsToldToTheLetter) {
  Storage.Fail(FileOperation::Open, {13, "no"});
  Button(WavCtl::Record);
  EXPECT_EQ(Down(), "");
  EXPECT_TRUE(At("frmRecordFileError").Visible());
  EXPECT_EQ(Text("frmRecordFileError"), "Recording File Error");
  EXPECT_EQ(Text("txtMessage"),
            "Unable to Create Temporary File /radio/~QUORLWAV.TMP\n Another application may be using the "
            "file\nClose the file in the other application");
  EXPECT_TRUE(Shown(9));
  Storage.ClearFailures();
  Button(WavCtl::Record);
  EXPECT_EQ(Down(), "0");
}

// A band that plays has the radio's frequency for as long as it does.
TEST_F(Transport, ARecordingOverAFileThatPlaysBeginsWithTheRadiosOwnFrequency) {
  MakeTour();
  OnChanged = [this] { Tuned = Deck.PlayerMode() == PlayerModes::Playing ? 72050000 : 95000000; };
  Button(WavCtl::Play);
  Hear(1.0);
  EXPECT_EQ(Tuned, 72050000);
  Button(WavCtl::Record);
  EXPECT_EQ(Down(), "0");
  ASSERT_FALSE(Deck.Log().empty());
  EXPECT_EQ(Deck.Log()[0].Freq, 95000000);
  EXPECT_TRUE(Memories) << "the tracks were those of the file";
}

TEST_F(Transport, AFullDiskIsToldOnceAndTheRecordingGoesOn) {
  Power = true;
  Button(WavCtl::Record);
  Hear(1.0);
  Storage.Fail(FileOperation::Write, {28, "/radio: full"});
  Hear(2.0);
  EXPECT_TRUE(At("frmRecordFileError").Visible());
  EXPECT_EQ(Text("txtMessage").find("/radio: full"), 0U) << Text("txtMessage");
  Click("OKButton");
  Hear(3.0);
  EXPECT_FALSE(At("frmRecordFileError").Visible()) << "once";
  EXPECT_EQ(Deck.PlayerMode(), PlayerModes::Recording);
  EXPECT_NE(State().find("The disk"), std::string::npos);
  Storage.ClearFailures();
  Hear(2.0);
  EXPECT_EQ(State(), "Recording");
}

TEST_F(Transport, AFileThatCanNotBeReadAnyMoreEndsPlayingAndIsNamed) {
  MakeTour({7205, 7220, 7290, 7300});
  Button(WavCtl::Play);
  Hear(1.0);
  Storage.Fail(FileOperation::Read, {5, std::string(kTour) + ": Input/output error"});
  Hear(17.0);
  EXPECT_EQ(Down(), "");
  EXPECT_EQ(Presses, "+-");
  EXPECT_TRUE(At("frmRecordFileError").Visible());
  EXPECT_EQ(Text("txtMessage").find(kTour), 0U) << Text("txtMessage");
}

TEST_F(Transport, TheLineFollowsPartsAndASaveThatTakesItsTime) {
  Deck.MostFileBytes = 200'000;
  Power = true;
  Button(WavCtl::Record);
  Hear(1.0);
  EXPECT_EQ(State(), "Recording");
  Hear(4.0);
  EXPECT_EQ(State(), "Recording file 4") << "two halves fit into each";
  Hear(1.0);
  EXPECT_EQ(Text("lblRecordTime"), "00:00:05") << "of all parts";
  Button(WavCtl::Stop);
  Deck.SaveProgress(0.42);
  EXPECT_EQ(State(), "Saving 42%");
  Boxes.SaveFileAnswers = {kTour};
  Button(WavCtl::Save);
  EXPECT_EQ(State(), "Saved as tour.wav");
  EXPECT_TRUE(Storage.Exists("/music/tour-2.wav"));
}

TEST_F(Transport, PlayingEndsWhereTheSoundDoesNotStartAndStaysOnWhereThatIsWanted) {
  MakeTour();
  SoundStarts = false;
  Button(WavCtl::Play);
  EXPECT_EQ(Down(), "");
  EXPECT_EQ(Deck.PlayerMode(), DeckMode::Stopped);
  SoundStarts = true;
  Click("chkStayOn");
  Button(WavCtl::Stop);
  EXPECT_EQ(Presses, "+-") << "off before, off behind";
  Presses.clear();
  Button(WavCtl::Play);
  Hear(1.0);
  Button(WavCtl::Stop);
  EXPECT_EQ(Presses, "+-+");
  EXPECT_TRUE(Power);
  Button(WavCtl::Play);
  Hear(14.0);
  EXPECT_EQ(Presses, "+-++-+") << "the end is a Stop";
}

TEST_F(Transport, ALoopGoesOnInTheVeryNextBlock) {
  MakeTour();
  Button(WavCtl::Loop);
  EXPECT_EQ(Down(), "6");
  EXPECT_EQ(At("cmdWavCtls(6)").BackColour(), 255U);
  EXPECT_TRUE(At("shpLooping").Visible());
  Button(WavCtl::Play);
  const std::int64_t frames = (Deck.BehindSamples() - Deck.FirstPosition()) / 2;
  const double once = double(frames) / 48000;
  Hear(once - 1.0);
  EXPECT_EQ(Panel->Tracks.lstRecordingLogs.ListIndex(), 2);
  int mute = 0;
  for (int i = 0; i < 48; ++i) {
    Block.fill(0);
    Hear(0.0427);
    mute += Block[5] == 0 && Block[2047] == 0;
  }
  EXPECT_LE(mute, 1) << "the recording's own first block";
  EXPECT_EQ(Deck.PlayerMode(), PlayerModes::Playing);
  EXPECT_EQ(Panel->Tracks.lstRecordingLogs.ListIndex(), 0);
  Button(WavCtl::Loop);
  EXPECT_FALSE(At("shpLooping").Visible());
  Hear(once);
  EXPECT_EQ(Deck.PlayerMode(), DeckMode::Stopped);
}

TEST_F(Transport, AClickWhileAnotherOneRunsIsDropped) {
  Record({7205});
  Boxes.WhileOpen = [this] {
    for (int i = 0; i < WavCtl::Count; ++i) Press("cmdWavCtls", i);
  };
  Boxes.MessageAnswers = {MessageAnswer::Cancel};
  Button(WavCtl::Close);
  EXPECT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_TRUE(Deck.IsUnsaved());
  EXPECT_FALSE(Deck.Looping);
}

// A button that was pressed with a key gives the keyboard to the tuning; a pointer never had it.
TEST_F(Transport, AButtonDoesNotKeepTheKeyboard) {
  std::vector<std::string> given;
  Mouse.GiveFocus = [&](Control& control) { given.push_back(control.Name()); };
  Button(WavCtl::Pause);
  EXPECT_TRUE(given.empty());
  At("cmdWavCtls(2)").GotFocus();
  Button(WavCtl::Pause);
  EXPECT_EQ(given, std::vector<std::string>{"picWavCtlsOffFocus"});
  At("cmdWavCtls(2)").LostFocus();
  Button(WavCtl::Pause);
  EXPECT_EQ(given.size(), 1U);
}

}  // namespace
}  // namespace quorl::test
