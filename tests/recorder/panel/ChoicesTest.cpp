// What is recorded, under which name, what the panel says of it; and the tracks of what is played.
#include "platform/CalendarDays.h"
#include "recorder/panel/RecorderRig.h"

namespace quorl::test {
namespace {

class Choices : public RecorderRig {
 protected:
  void Type(const std::string& name) {
    Set("txtRecordFileName", name);
    At("txtRecordFileName").LostFocus();
  }
  int PressedRate() { return Panel->Options.optRecordSampleRate.Pressed(); }
};

TEST_F(Choices, TheRateIsTheUsersTheRecordingsOrTheFiles) {
  Press("optRecordSampleRate", 2);
  EXPECT_EQ(Deck.WavSamplingRate(), 12000);
  EXPECT_EQ(Text("lblRecordMBytesPerHr"), "82");
  Press("optRecordSamplePerBit", 1);
  EXPECT_EQ(Deck.BitsPerSample, 8);
  EXPECT_EQ(Text("lblRecordMBytesPerHr"), "82") << "the samples take 16 bits all the same";
  Press("optRecordSamplePerBit", 0);
  EXPECT_NE(At("optRecordSamplePerBit(1)").ToolTip().find("noise"), std::string::npos);
  MakeTour();
  Press("optRecordSampleRate", 0);
  EXPECT_EQ(PressedRate(), 2) << "a file can't change its rate";
  EXPECT_EQ(At("optRecordSampleRate(2)").BackColour(), kSelectedColour);
  Button(WavCtl::Close);
  Press("optRecordSampleRate", 4);
  EXPECT_EQ(Text("lblRecordMBytesPerHr"), "21");
  Load(kTour);
  EXPECT_EQ(PressedRate(), 2);
  Button(WavCtl::Close);
  EXPECT_EQ(PressedRate(), 4) << "the user's own again";
  Power = true;
  Button(WavCtl::Record);
  Press("optRecordSampleRate", 0);
  Click("chkRecordIF");
  EXPECT_EQ(PressedRate(), 4);
  EXPECT_EQ(Text("chkRecordIF"), "0");
  EXPECT_FALSE(Deck.RecordIF);
  EXPECT_EQ(Deck.WavSamplingRate(), 3000);
}

TEST_F(Choices, ANameGoesBesideTheOneBefore) {
  Type("night");
  EXPECT_EQ(Deck.RecordFileName, "/music/night.wav") << "where files are sought";
  EXPECT_EQ(Text("txtRecordFileName"), "night.wav");
  Type("/else/Where.WAV");
  EXPECT_EQ(Deck.RecordFileName, "/else/Where.WAV");
  EXPECT_EQ(Text("txtRecordFileName"), "Where.WAV");
  EXPECT_EQ(std::string(At("txtRecordFileName").ToolTip()), "/else/Where.WAV");
  Type("next");
  EXPECT_EQ(Deck.RecordFileName, "/else/next.wav");
  Type(" ");
  EXPECT_EQ(Deck.RecordFileName, "");
  At("txtRecordFileName").LostFocus();
  EXPECT_EQ(Deck.RecordFileName, "") << "to pass through the box is not to type";
  Set("txtRecordFileName", "typed");
  Button(WavCtl::Loop);
  EXPECT_EQ(Deck.RecordFileName, "/music/typed.wav") << "a button leaves the keyboard in the box";
  Boxes.SaveFileAnswers = {"/music/browsed", std::nullopt};
  Click("cmdBrowseWavFile");
  EXPECT_EQ(Boxes.SaveFileRequests.back().Title, "Select Recording Filename");
  EXPECT_EQ(Boxes.SaveFileRequests.back().FileName, "quorlsdr.wav");
  Click("cmdBrowseWavFile");
  EXPECT_EQ(Deck.RecordFileName, "/music/browsed.wav");
}

TEST_F(Choices, ThePanelSaysBeforehandWhatWillNotSoundWell) {
  Radio.SetFilterHigh(5000);
  EXPECT_EQ(State(), "Ready");
  Press("optRecordSampleRate", 2);
  EXPECT_EQ(State(), "Ready") << "up to 6,000 Hz";
  Press("optRecordSampleRate", 3);
  EXPECT_EQ(State(), "The filter passes more than 3000 Hz: that folds");
  Radio.SetFilterHigh(3000);
  EXPECT_EQ(State(), "Ready");
  Radio.SetDemodMode(DemodMode::DRM);
  EXPECT_NE(State().find("record the IF"), std::string::npos);
  Click("chkRecordIF");
  EXPECT_EQ(State(), "Ready");
  EXPECT_EQ(Text("lblRecordMBytesPerHr"), "330");
  Click("chkRecordIF");
  Button(WavCtl::Record);
  EXPECT_EQ(State(), "Recording waits for On");
  Button(WavCtl::Stop);
  EXPECT_EQ(State(), "Recorded, not saved: Save or Close");
  Boxes.MessageAnswers = {MessageAnswer::No};
  Button(WavCtl::Close);
  MakeTour();
  EXPECT_NE(State().find("nearly silent"), std::string::npos);
  Radio.SetDemodMode(DemodMode::USB);
  EXPECT_EQ(State(), "Loaded tour.wav");
}

TEST_F(Choices, TheDiskIsCountedInHours) {
  EXPECT_FALSE(At("lblRecorderDisk").Visible());
  Storage.SetSpace(std::int64_t{10} * 345'600'000);
  Button(WavCtl::Loop);
  Run(0.1);
  EXPECT_EQ(Text("lblRecorderDisk"), "10.0");
  Press("optRecordSampleRate", 4);
  Run(0.1);
  EXPECT_EQ(Text("lblRecorderDisk"), "160");
  Press("optRecordSampleRate", 0);
  Power = true;
  Button(WavCtl::Record);
  Storage.SetSpace(5'900'000 * 5);
  Hear(11.0);
  EXPECT_EQ(State(), "The disk holds 4 minutes more");
}

TEST_F(Choices, TracksAreListedToTheLetterAndReached) {
  MakeTour({7205, 7220, 14200});
  const ListBox& list = Panel->Tracks.lstRecordingLogs;
  EXPECT_EQ(Text("txtRecordingLogHeaders"), " F(KHz)   Date      Time   Duration");
  ASSERT_EQ(list.Items().size(), 3U);
  EXPECT_EQ(list.Items()[2], " 14200 " + DateText(Deck.Log()[2].When) + " 0:00:04 ");
  EXPECT_EQ(list.ListIndex(), 0);
  EXPECT_FALSE(Memories);
  EXPECT_EQ(Panel->sldRecorderSeek.Marks(), (std::vector<int>{0, 41, 82}));
  Button(WavCtl::Play);
  Hear(0.1);
  const auto place = [this] { return double(Deck.PlayPosition() - 45) / 2 / 48000; };
  Button(WavCtl::Previous);
  EXPECT_LT(place(), 0.2) << "there is none before the first";
  Button(WavCtl::Next);
  EXPECT_EQ(list.ListIndex(), 1);
  EXPECT_NEAR(place(), 4.096, 0.05);
  Hear(0.1);
  Set("lstRecordingLogs", "2");
  EXPECT_NEAR(place(), 8.192, 0.05);
  Button(WavCtl::Next);
  EXPECT_EQ(list.ListIndex(), 2);
  Hear(0.1);
  Set("sldRecorderSeek", "30");
  EXPECT_EQ(Deck.RecordingOffsetInBytes, 45 + 2 * 3 * 48000);
  Hear(2.0);
  EXPECT_EQ(list.ListIndex(), 1) << "the line follows what is heard";
  EXPECT_NEAR(Panel->sldRecorderSeek.Value(), 50, 1);
}

TEST(TrackListTest, LinesKeepTheNumbersOfTheirRecords) {
  ControlRegistry names;
  TrackList tracks(names);
  std::vector<std::int32_t> chosen;
  tracks.Chosen = [&](std::int32_t record) { chosen.push_back(record); };
  tracks.Fill({}, {});
  EXPECT_EQ(tracks.txtRecordingLogHeaders.Text(), "No Track Information Found");
  const auto record = [](std::int64_t from, std::int64_t to) {
    return LogRecord{45000.5, 72049999, 44 + 96000 * from, 44 + 96000 * to};
  };
  // The second lasts no second, the third a long night.
  tracks.Fill({record(0, 4), {45000.5, 1, 1000, 1044}, record(4, 4 + 36005)}, {});
  ASSERT_EQ(tracks.lstRecordingLogs.Items().size(), 2U);
  EXPECT_EQ(tracks.lstRecordingLogs.Items()[1], "  7205 2023-03-15 12:00:00 10:00:05 ");
  tracks.Step(1);
  tracks.Step(1);
  tracks.lstRecordingLogs.SetListIndex(0);
  EXPECT_EQ(chosen, (std::vector<std::int32_t>{2, 0}));
  tracks.SelectRecord(1);
  EXPECT_EQ(tracks.lstRecordingLogs.ListIndex(), 0) << "it has no line";
  tracks.SelectRecord(2);
  EXPECT_EQ(tracks.lstRecordingLogs.ListIndex(), 1);
  EXPECT_EQ(chosen.size(), 2U) << "told nobody";
  tracks.Fill(std::vector<LogRecord>(12'345, record(0, 1)), {});
  EXPECT_EQ(tracks.lstRecordingLogs.Items().size(), 10'000U);
  EXPECT_EQ(std::string(tracks.txtRecordingLogHeaders.ToolTip()), "The first 10,000 of 12,345 tracks");
}

TEST_F(Choices, OptionsAreKept) {
  SettingsTable table("Recorder");
  Panel->AddOwnSettings(table);
  SettingsStore store(Storage, "/radio/settings.ini");
  for (const char* option : {"chkStayOn", "chkKeepTail", "chkRecordIF"}) Click(option);
  EXPECT_TRUE(Deck.KeepTail && Deck.RecordIF);
  table.Write(store);
  for (const char* option : {"chkStayOn", "chkKeepTail", "chkRecordIF"}) Click(option);
  table.Read(store);
  Panel->Initialise();
  for (const char* option : {"chkStayOn", "chkKeepTail", "chkRecordIF"}) EXPECT_EQ(Text(option), "1");
}

}  // namespace
}  // namespace quorl::test
