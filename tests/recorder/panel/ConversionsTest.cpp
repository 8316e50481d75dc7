#include "recorder/files/WavBytes.h"
#include "recorder/panel/RecorderRig.h"

namespace quorl::test {
namespace {

// Half a minute of stereo at 44.1 kHz.
std::string StereoSong() {
  return Riff(Chunk("fmt ", FormatBody({1, 2, 44100, 16})) +
              Chunk("data", std::string(44100 * 30 * 4, '\x11')));
}

TEST_F(RecorderRig, ASoundOfAnotherMakeBecomesARecordingBesideTheSound) {
  Storage.Put("/music/song.wav", StereoSong());
  Load("/music/song.wav");
  EXPECT_EQ(State().find("Reading song.wav"), 0U) << State();
  Run(20);
  EXPECT_EQ(State(), "Loaded song.wav");
  EXPECT_EQ(Text("txtRecordFileName"), "song.wav");
  EXPECT_EQ(Deck.LastDirectory, "/music");
  EXPECT_EQ(Text("txtRecordingLogHeaders"), "No Track Information Found");
  EXPECT_FALSE(At("cmdExportTracks").Enabled());
  EXPECT_NEAR(double(Deck.BehindSamples() - 45) / 2 / 48000, 30.0, 0.01);
  Button(WavCtl::Play);
  Hear(1);
  EXPECT_EQ(State(), "Playing song.wav");
  Panel.reset();
  EXPECT_FALSE(Storage.Exists("/radio/~QUORLSND.TMP"));
}

TEST_F(RecorderRig, StopOrARecordingEndsTheReadingAndNothingIsLeft) {
  Storage.Put("/music/song.wav", StereoSong());
  Load("/music/song.wav");
  Button(WavCtl::Stop);
  EXPECT_EQ(State(), "Ready");
  EXPECT_EQ(Presses, "");  // the sound goes on
  Load("/music/song.wav");
  Power = true;
  Button(WavCtl::Record);
  Hear(5);
  EXPECT_EQ(State(), "Recording");
  EXPECT_FALSE(Storage.Exists("/radio/~QUORLSND.TMP"));
}

TEST_F(RecorderRig, WhatIsNoSoundIsToldAndTheDeckStaysAsItWas) {
  MakeTour();
  Storage.Put("/music/letter.wav", "Dear listener, this is no sound, though it is more than 44 bytes long.");
  Load("/music/letter.wav");
  Run(1);
  EXPECT_NE(Text("txtMessage").find("/music/letter.wav"), std::string::npos);
  EXPECT_TRUE(Deck.HasFile());
  EXPECT_EQ(Text("lstRecordingLogs").find("7205") == std::string::npos, false);
}

TEST_F(RecorderRig, TracksBecomeFilesBesideTheRecording) {
  MakeTour();
  Click("cmdExportTracks");
  Set("mnuExportTracks", "All tracks as FLAC");
  Run(5);
  EXPECT_EQ(State(), "3 tracks in /music/tour tracks");
  EXPECT_EQ(Storage.List("/music/tour tracks", ".flac").size(), 3U);
  Set("mnuExportTracks", "This track as WAV");
  Run(5);
  EXPECT_EQ(Storage.List("/music/tour tracks", ".wav"),
            std::vector<std::string>{"2024-01-01 1200 7205 kHz.wav"});
}

TEST_F(RecorderRig, BeforeALeftBehindRecordingGoesItIsAsked) {
  Deck.LeaveFolder(true);
  Power = true;
  Button(WavCtl::Record);
  EXPECT_FALSE(Deck.IsRecording());
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  Boxes.MessageAnswers.push_back(MessageAnswer::Yes);
  Button(WavCtl::Record);
  EXPECT_TRUE(Deck.IsRecording());
}

TEST_F(RecorderRig, ARecordingThatMayGoStaysWhereTheOtherFileCantBeOpened) {
  Record({7205});
  Boxes.MessageAnswers.push_back(MessageAnswer::No);
  Load("/music/nothing.wav");
  EXPECT_TRUE(Deck.IsUnsaved());
  EXPECT_TRUE(Storage.Exists(Deck.TempFileName()));
  Storage.Put("/music/song.wav", StereoSong());
  Boxes.MessageAnswers.push_back(MessageAnswer::No);
  Load("/music/song.wav");
  EXPECT_TRUE(Deck.IsUnsaved());
  Run(20);
  EXPECT_EQ(State(), "Loaded song.wav");
  EXPECT_FALSE(Storage.Exists(Deck.TempFileName()));
}

}  // namespace
}  // namespace quorl::test
