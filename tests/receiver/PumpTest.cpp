// The block pump: order of calls, guard, statistics, playback.
#include <gtest/gtest.h>

#include <sstream>

#include "receiver/ChainRig.h"

namespace quorl::test {
namespace {

// Recorder, sound card and analyser that write down who was called.
struct Book : BlockRecorder, SoundOutput, AnalyserInput {
  bool IsPlaying() const override { return Mode == PlayerModes::Playing; }
  std::int32_t PlayerMode() const override { return Mode; }
  void GetNextSamples(std::int16_t* block, std::int32_t n) override {
    Calls << "get ";
    for (std::int32_t k = 0; k < n; ++k) {
      block[k] = static_cast<std::int16_t>(std::lrint(5000.0 * std::cos(Radians(1500.0) * double(Played++))));
    }
  }
  std::int16_t AddSamples(const std::int16_t* block, std::int32_t n) override {
    Calls << "add ";
    Recorded.assign(block, block + n);
    return -7;
  }
  bool IsIF() const override { return OfIF; }
  const std::int16_t* GetNextIF(std::int16_t* left, std::int32_t n) override {
    Calls << "getif ";
    Right.assign(static_cast<std::size_t>(n), 77);
    for (std::int32_t k = 0; k < n; ++k) {
      left[k] = static_cast<std::int16_t>(std::lrint(5000.0 * std::cos(Radians(12000.0) * double(Played++))));
    }
    return Right.data();
  }
  std::int16_t AddIF(const std::int16_t* left, const std::int16_t* right, std::int32_t n) override {
    Calls << "addif ";
    Recorded.assign(left, left + n);
    Right.assign(right, right + n);
    return -8;
  }
  void SetOutputAttenuation(std::int32_t value) override { Calls << "level" << value << " "; }
  void Output(const std::int16_t* left, const std::int16_t* right) override {
    Calls << (left == right ? "out " : "stereo ");
    Heard.assign(left, left + SamplesPerEvent);
  }
  bool Enabled() const override { return true; }
  std::int32_t Source() const override { return Tap; }
  bool Chn2Enabled() const override { return false; }
  void LoadSamples_INT16(const std::int16_t*, const std::int16_t*) override { Calls << "show16 "; }
  void LoadSamples_S(const float*, const float*) override { Calls << "show "; }
  double LowerEdge() const override { return 2000.0; }
  double UpperEdge() const override { return 22000.0; }
  void SetFrequencyReference(std::int32_t hertz) override { Calls << "at" << hertz << " "; }
  void SetLowSideLO(bool low) override { Calls << (low ? "low " : "high "); }
  void LoadFilterCoeffs_T_S(const float* taps) override { Curve.assign(taps, taps + BlockPoints); }

  std::string Take() {
    const std::string all = Calls.str();
    Calls.str("");
    return all;
  }

  std::ostringstream Calls;
  std::vector<std::int16_t> Recorded, Heard, Right;
  std::vector<float> Curve;
  std::int32_t Mode = 0, Tap = -1;
  std::int64_t Played = 0;
  bool OfIF = false;
};

class PumpTest : public testing::Test {
 protected:
  PumpTest() {
    radio.Initialise();
    radio.Tap.Analyser = &book;
    radio.Tap.TunedFrequency = [] { return 60750005; };
    radio.Housekeeping();
    I.fill(1000);
  }
  void Block() { radio.Pump.SoundCard_DataReady(I.data(), Q.data()); }

  Book book;
  VirtualClock clock;
  std::function<void()> onYield = [] {};
  Receiver radio{clock, book, book, [this] { onYield(); }};
  std::array<std::int16_t, SamplesPerEvent> I{}, Q{};
};

TEST_F(PumpTest, CallsComeInOrder) {
  Block();
  EXPECT_EQ(book.Take(), "level0 out ");
  book.Mode = PlayerModes::Recording;
  radio.Vars.DRMAudioMuted = true;  // overrules the level of the AGC stage
  Block();
  EXPECT_EQ(book.Take(), "level0 level-40000 add out ");
  EXPECT_EQ(book.Recorded, book.Heard);
  EXPECT_EQ(radio.Pump.RecorderAddResult, -7);
  book.Mode = PlayerModes::Playing;
  radio.Vars.DRMAudioMuted = false;
  Block();
  EXPECT_EQ(book.Take(), "get level0 out ");
}

TEST_F(PumpTest, IFIsExchangedInFrontOfTheChain) {
  book.OfIF = true;
  book.Mode = PlayerModes::Recording;
  Q.fill(33);
  Block();
  EXPECT_EQ(book.Take(), "addif level0 out ");
  EXPECT_EQ(book.Recorded, std::vector<std::int16_t>(SamplesPerEvent, 1000));
  EXPECT_EQ(book.Right, std::vector<std::int16_t>(SamplesPerEvent, 33));
  EXPECT_EQ(radio.Pump.RecorderAddResult, -8);
  // A carrier from the file is heard as it would be from the antenna.
  book.Mode = PlayerModes::Playing;
  for (int i = 0; i < 20; ++i) Block();
  EXPECT_EQ(book.Take().find("add"), std::string::npos);
  EXPECT_GT(radio.Vars.SignalLevelRing[0], 1000.0F);
}

TEST_F(PumpTest, TapsShowTheChosenPointWithItsReference) {
  // 6075000.5 Hz less half the span of 20 kHz, half to even.
  const std::pair<std::int32_t, const char*> rows[] = {
      {SpectrumSource::IFIn, "show16 at6065000 high level0 out "},
      {SpectrumSource::PreDemod, "show at6065000 high level0 out "},
      {SpectrumSource::PostDemod, "show at6065000 high level0 out "},
      {SpectrumSource::AFOut, "level0 out show16 high "}};
  for (const std::int32_t model : {SDRModel::DRT1, SDRModel::IQXtalRX}) {
    radio.Vars.SDRModelNo = model;
    for (const auto& [source, calls] : rows) {
      book.Tap = source;
      Block();
      EXPECT_EQ(book.Take(), calls) << model << " " << source;
    }
  }
  std::vector<float> taps(BlockPoints);
  radio.Filters.IFFilterI.GetFilterCoeffs_T_S(taps.data());
  EXPECT_EQ(book.Curve, taps);
}

TEST_F(PumpTest, YieldsWhenBusyAndDropsWhatArrivesMeanwhile) {
  // The recorder's call stands for a chain that takes its time.
  int yields = 0;
  onYield = [&] {
    ++yields;
    I.fill(77);
    Block();
    EXPECT_EQ(I[5], 77);  // untouched
  };
  Block();
  EXPECT_EQ(yields, 0);
  struct SlowAnalyser : Book {
    explicit SlowAnalyser(VirtualClock& c, int us) : Clock(c), Microseconds(us) {
      Tap = SpectrumSource::IFIn;
    }
    void LoadSamples_INT16(const std::int16_t*, const std::int16_t*) override {
      Clock.Advance(std::chrono::microseconds(Microseconds));
    }
    VirtualClock& Clock;
    int Microseconds;
  };
  for (const auto& [microseconds, expected] : {std::pair{38000, 0}, {38800, 1}, {60000, 1}}) {
    SlowAnalyser slow(clock, microseconds);
    radio.Tap.Analyser = &slow;
    book.Take();
    yields = 0;
    Block();
    EXPECT_EQ(yields, expected) << microseconds;
    EXPECT_EQ(book.Take(), "level0 out ");  // one block, not two
    EXPECT_NEAR(radio.Pump.PumpLoad, microseconds / 42666.6662, 1e-5);
  }
  radio.Tap.Analyser = nullptr;
  Block();  // the guard is down again
  EXPECT_EQ(book.Take(), "level0 out ");
}

TEST_F(PumpTest, StatisticsTurnAfter47BlocksAndOnlyWhileOn) {
  Block();
  EXPECT_EQ(radio.Pump.Statistics.PeakInRing[0], 0);
  radio.Vars.PerfStatsOn = true;
  for (int block = 0; block < 48; ++block) {
    I.fill(static_cast<std::int16_t>(100 + block));
    Block();
  }
  const PumpStatistics& s = radio.Pump.Statistics;
  EXPECT_EQ(s.PeakInRing[0], 147);
  EXPECT_EQ(s.PeakInRing[1], 101);
  EXPECT_EQ(s.PeakInRing[46], 146);
  EXPECT_EQ(s.PeakInIndex, 1);
  EXPECT_EQ(s.PeakOutIndex, 1);
  EXPECT_EQ(s.PumpTimeIndex, 1);
}

TEST_F(PumpTest, PlaybackIsFilteredAndLevelledButNotDemodulated) {
  book.Mode = PlayerModes::Playing;
  radio.SetDemodMode(DemodMode::USB);
  radio.SetFilterEdges(300, 2300);
  radio.Housekeeping();
  const auto play = [&] {
    SampleBuffer audio;
    for (int block = 0; block < 24; ++block) {
      Block();
      if (block >= 8) audio.insert(audio.end(), book.Heard.begin(), book.Heard.end());
    }
    return LineAt(audio, 1500.0);
  };
  radio.Vars.AGCON = false;
  EXPECT_NEAR(play(), 5000.0, 50.0);
  // The level is the mean magnitude of the pair (audio, audio).
  const auto& levels = radio.Vars.SignalLevelRing;
  const std::array<float, 3> newest{levels[0], levels[1], levels[2]};
  EXPECT_NEAR(newest[0], std::sqrt(2.0) * 5000.0 * 2.0 / std::numbers::pi, 40.0);
  Block();
  EXPECT_TRUE(std::equal(newest.begin(), newest.end(), levels.begin() + 1));  // newest first
  TurnNotchOn(radio, NotchModes::Manual, NotchTypes::Audio, 1500, 100);
  radio.Housekeeping();
  EXPECT_LT(play(), 50.0);
  radio.SwitchNotch(false);
  radio.SetFilterEdges(300, 1000);
  radio.Housekeeping();
  EXPECT_LT(play(), 5.0);
}

TEST_F(PumpTest, HousekeepingWaitsForABlockAndClearsTheFlag) {
  radio.Vars.DSPRunning = true;
  int yields = 0;
  onYield = [&] {
    if (++yields == 3) radio.Vars.DSPRunning = false;
  };
  radio.Vars.FiltersDirty = true;
  radio.SetFilterEdges(400, 900);
  radio.Housekeeping();
  EXPECT_GE(yields, 3);
  EXPECT_FALSE(radio.Vars.FiltersDirty);
  EXPECT_EQ(radio.Filters.AFFilter.FLow, 400);
}

}  // namespace
}  // namespace quorl::test
