// An IF recording off one board, played by a radio with another one: what was heard is heard again.
#include <gtest/gtest.h>

#include "core/FrameRig.h"
#include "display/scope/TraceCanvas.h"

namespace quorl::test {
namespace {

constexpr char kFile[] = "plans/night.wav";
constexpr double kWhistle = 7206300.0;  // Hz, the heterodyne

struct RecordedBoard {
  int Model;
  bool LowSide;
};

std::string PlayingSettings(const RecordedBoard& board) {
  std::string settings = "[frmMain]\nSpectrumAnalyserOn=1\nSDRModelNo=" + std::to_string(board.Model) +
                         "\n[DDSAD9835]\nClkIn=50000000\n[SpectrumAnalyser]\n.Mode.0.FastMode=True\n";
  for (const char* vfo : {"VFO1.DRT1", "VFO1.ElektorDRM", "VFO1.RXIQ"}) {
    settings += std::string("[") + vfo +
                "]\nTunedFrequency=72050000\nHiSideLo=" + (board.LowSide ? "False" : "True") + "\n";
  }
  return settings;
}

struct IFRig : FrameRig {
  IFRig(const RecordedBoard& board, std::int32_t mode)
      : FrameRig(PlayingSettings(board), board.Model, board.LowSide) {
    if (!Start()) throw std::runtime_error("the radio does not start");
    Picture().SetPlace({0, 0, 1200, 400});
    Picture().SetSurfaces(&front, &back);
    Press("optMode", mode);
    Set("chkIFFilter", "1");
    Press("optIFFilter", IFFilterMode::Track);
    Set("chkAGC", "0");
    Click("optPwr(0)");
    Run(1.0);
  }
  ~IFRig() override { Stop(); }  // before its surfaces go

  CanvasPicture& Picture() { return Frame().Scope().picScope; }
  clsWavFile& Deck() { return Frame().WavFile(); }
  // The band as it comes from the board for some seconds; where what was heard meanwhile begins.
  std::size_t Record(double seconds) {
    Deck().RecordIF = true;
    EXPECT_EQ(Deck().OpenRecording(), 0);
    const std::size_t begin = Heard.size();
    Run(seconds);
    Deck().StopRecording();
    EXPECT_EQ(Deck().SaveAs(kFile), 0);
    return begin;
  }
  std::size_t Play(const std::string& content) {
    Storage.Put(kFile, content);
    Deck().FileName = kFile;
    EXPECT_EQ(Deck().OpenFile(), 0);
    const std::size_t begin = Heard.size();
    Press("cmdWavCtls", WavCtl::Play);
    return begin;
  }
  // Where the trace is highest around a frequency of the air, in Hz.
  double PeakNear(double hertz) {
    const FrequencyScale scale = Frame().Scope().SpectrumAnalyser.Frequencies();
    const TraceCanvas& latest = front.Visible ? front : back;
    const double share = scale.XAt(hertz) / scale.Width(), reach = 20.0 / scale.Width();
    return scale.FrequencyAt(scale.Width() * latest.PeakShare(share - reach, share + reach));
  }

  TraceCanvas front{1200, 400}, back{1200, 400};
};

// Of a stretch of each, from the same place on.
double Correlation(const std::vector<std::int16_t>& a, std::size_t atA, const std::vector<std::int16_t>& b,
                   std::size_t atB, std::size_t count) {
  double ab = 0.0, aa = 0.0, bb = 0.0;
  for (std::size_t n = 0; n < count; ++n) {
    const double x = a.at(atA + n), y = b.at(atB + n);
    ab += x * y;
    aa += x * x;
    bb += y * y;
  }
  return ab / std::sqrt(aa * bb);
}

class FrmMainIFRecording : public testing::TestWithParam<RecordedBoard> {};

TEST_P(FrmMainIFRecording, SoundsAndLooksOnAnotherBoardAsItDid) {
  for (const std::int32_t mode : {DemodMode::AM, DemodMode::USB}) {
    SCOPED_TRACE(mode);
    IFRig there(GetParam(), mode);
    const std::size_t was = there.Record(6.0);
    const double line = there.PeakNear(kWhistle);
    Failure failure;
    const std::string night = there.Storage.Read(kFile, failure).value_or("");

    const RecordedBoard other{(GetParam().Model + 1) % 4, !GetParam().LowSide};
    IFRig here(other, mode);
    here.Frame().Radio().Tuning().Tune().MoveTo(100000000);  // where the band is empty
    here.Run(1.0);
    const std::int64_t oscillator = here.Oscillator();
    const std::size_t is = here.Play(night);
    here.Run(4.0);
    EXPECT_EQ(here.Digits(), "072050000");
    EXPECT_GT(Correlation(there.Heard, was + FSampling, here.Heard, is + FSampling, 2 * FSampling), 0.999);
    EXPECT_GT(here.Loudness(), 30.0);
    EXPECT_NEAR(here.PeakNear(kWhistle), line, 24.0);
    EXPECT_EQ(here.Oscillator(), oscillator);

    // The end of the recording is the end of all of it.
    here.Run(4.0);
    EXPECT_FALSE(here.Frame().Played().IsPlaying());
    EXPECT_EQ(here.Digits(), "100000000");
    EXPECT_EQ(here.Vars().SDRModelNo, other.Model);
    EXPECT_EQ(here.Vars().LowSideLO, other.LowSide);
  }
}

INSTANTIATE_TEST_SUITE_P(Boards, FrmMainIFRecording,
                         testing::Values(RecordedBoard{0, false}, RecordedBoard{1, true},
                                         RecordedBoard{2, false}, RecordedBoard{3, true}));

TEST(FrmMainIFRecording, ModeFilterBfoAndNotchWorkOnIt) {
  IFRig there({SDRModel::DRT1, false}, DemodMode::AM);
  there.Record(12.0);
  Failure failure;
  IFRig here({SDRModel::DRT1, false}, DemodMode::USB);
  here.Frame().Radio().Tuning().Tune().MoveTo(100000000);
  here.Play(there.Storage.Read(kFile, failure).value_or(""));
  here.Run(2.0);
  const double whistle = here.Tone(1300.0);
  EXPECT_GT(whistle, 100.0);

  here.Press("optMode", DemodMode::LSB);
  here.Run(2.0);
  EXPECT_LT(here.Tone(1300.0), whistle / 30.0);
  here.Press("optMode", DemodMode::USB);
  here.Frame().Scrollables().SetValue(CtlIndex::BFO, 400.0F);
  here.Run(2.0);
  EXPECT_LT(here.Tone(1300.0), whistle / 30.0);
  EXPECT_GT(here.Tone(900.0) + here.Tone(1700.0), whistle / 2.0);
  here.Frame().Scrollables().SetValue(CtlIndex::BFO, 0.0F);
  here.Set("chkNotchOn", "1");
  here.Frame().Scrollables().SetValue(CtlIndex::NotchC, 1300.0F);
  here.Run(2.0);
  EXPECT_LT(here.Tone(1300.0), whistle / 30.0);
  here.Set("chkNotchOn", "0");
  here.Frame().Scrollables().SetValue(CtlIndex::FilterHi, 900.0F);
  here.Run(2.0);
  EXPECT_LT(here.Tone(1300.0), whistle / 30.0);
}

// Live, the radio is heard while the recording pauses.
TEST(FrmMainIFRecording, PausesIntoTheRadioAndGoesOnAsItWasSet) {
  IFRig there({SDRModel::ElektorDRM, true}, DemodMode::AM);
  there.Record(12.0);
  Failure failure;
  IFRig here({SDRModel::DRT1, false}, DemodMode::LSB);
  here.Play(there.Storage.Read(kFile, failure).value_or(""));
  here.Run(1.0);
  here.Press("optMode", DemodMode::USB);
  here.Run(1.0);
  for (int round = 0; round < 2; ++round) {
    here.Press("cmdWavCtls", WavCtl::Pause);
    EXPECT_EQ(here.Vars().SDRModelNo, SDRModel::DRT1);
    EXPECT_EQ(here.Vars().CurrentDemodMode, DemodMode::LSB);
    here.Run(0.5);
    here.Press("cmdWavCtls", WavCtl::Pause);
    EXPECT_EQ(here.Vars().SDRModelNo, SDRModel::ElektorDRM);
    EXPECT_EQ(here.Vars().CurrentDemodMode, DemodMode::USB);
    here.Run(0.5);
  }
  here.Click("optPwr(1)");
  EXPECT_FALSE(here.Frame().Played().IsPlaying());
  EXPECT_EQ(here.Vars().CurrentDemodMode, DemodMode::LSB);
}

}  // namespace
}  // namespace quorl::test
